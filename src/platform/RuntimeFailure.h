#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace zrk {

/// The kind of a failure, from which the outcome and the command line's exit status follow.
enum class FailureKind {
    PortNotOpened, ///< the device could not be opened
    Cancelled,     ///< the user has stopped it while it waited
    PortNotOpen,   ///< a port operation on a closed port
    PortLost,      ///< the device went away or takes no more data
    File,          ///< a file could not be opened or read
    TypeMismatch,  ///< a text that should be a number is not
    Overflow,      ///< a number does not fit
    InvalidArgument,
    WrongAnswer, ///< an answer of the board that is out of its range
    Index,       ///< an index outside a table
    Internal,    ///< a failure of the system or the program itself, such as no memory
};

/// The one exception of this program: a failure with a description that a user can read. Operations catch it
/// in one place each; it never passes through the event loop.
class RuntimeFailure : public std::exception {
  public:
    RuntimeFailure(FailureKind kind, QString description)
        : m_kind(kind), m_description(std::move(description)), m_what(m_description.toUtf8()) {}

    [[nodiscard]] FailureKind kind() const noexcept { return m_kind; }
    [[nodiscard]] const QString& description() const noexcept { return m_description; }
    [[nodiscard]] const char* what() const noexcept override { return m_what.constData(); }

  private:
    FailureKind m_kind;
    QString m_description;
    QByteArray m_what;
};

} // namespace zrk

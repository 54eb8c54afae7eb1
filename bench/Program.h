#pragma once

#include <QProcess>

namespace zrkbench {

/// A program that was built with this one, running until it ends or this object is destroyed.
struct Program : QProcess {
    /// Throws std::runtime_error if it does not start.
    Program(const char* name, const QStringList& arguments);
    ~Program() override;
    Q_DISABLE_COPY_MOVE(Program)
};

} // namespace zrkbench

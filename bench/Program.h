#pragma once

#include <QProcess>

namespace zrkbench {

/// A program that was built with this one, running until it is over or this goes.
struct Program : QProcess {
    /// Throws std::runtime_error when it does not start.
    Program(const char* name, const QStringList& arguments);
    ~Program() override;
    Q_DISABLE_COPY_MOVE(Program)
};

} // namespace zrkbench

#include "BenchBoard.h"

#include <QCoreApplication>

#include <stdexcept>

namespace zrkbench {

QString siblingProgram(const QString& name) {
    return QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
}

BenchBoard::BenchBoard(const QStringList& options) {
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(siblingProgram(QStringLiteral("zrk-board")), options);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(10000)) {
    }
    m_device = QString::fromLocal8Bit(m_process.readLine()).trimmed();
    if (m_device.isEmpty())
        throw std::runtime_error("the simulated board did not start");
}

BenchBoard::~BenchBoard() {
    m_process.terminate();
    m_process.waitForFinished(5000);
}

} // namespace zrkbench

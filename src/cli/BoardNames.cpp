#include "cli/BoardNames.h"

#include "cli/UsageError.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace zrk {
namespace {

QString fitForFiles(QString text) {
    static const QRegularExpression kUnfit(QStringLiteral("[^A-Za-z0-9._-]+"));
    return text.replace(kUnfit, QStringLiteral("_"));
}

/// Returns the names that a device can have here, the shortest first.
QStringList namesFor(const QString& device) {
    static const QRegularExpression kById(
        QStringLiteral("^usb-(?<all>.*?_?(?<last>[^_]*))-(?<part>if[0-9a-fA-F]{2}(-port[0-9]+)?)$"));
    static const QRegularExpression kByPath(QStringLiteral("-(?<socket>usb-[^-]+)(-port[0-9]+)?$"));
    static const QRegularExpression kDigit(QStringLiteral("[0-9]"));
    const QString file = QFileInfo(device).fileName();
    QStringList names;
    if (const auto match = kById.match(file); match.hasMatch()) {
        QString serial = match.captured(QStringLiteral("last"));
        if (!serial.contains(kDigit)) // an adapter without a serial number
            serial = match.captured(QStringLiteral("all"));
        names += {serial, serial + QLatin1Char('-') + match.captured(QStringLiteral("part"))};
    } else if (const auto socket = kByPath.match(file); socket.hasMatch()) {
        names += socket.captured(QStringLiteral("socket"));
    }
    names += {file, device};
    for (QString& name : names)
        name = fitForFiles(name);
    return names;
}

bool hasName(const QStringList& names, const QString& name) {
    return names.contains(name, Qt::CaseInsensitive);
}

} // namespace

NamedPort readNamedPort(const QString& value) {
    static const QRegularExpression kLabel(QStringLiteral("^[\\p{L}\\p{N}._-]{1,32}$"));
    static const QRegularExpression kPath(QStringLiteral("[/\\\\:]"));
    const qsizetype equals = value.indexOf(QLatin1Char('='));
    const QString label = value.left(equals);
    if (equals < 0 || label.contains(kPath) || QFileInfo::exists(value))
        return {{}, value};
    if (!kLabel.match(label).hasMatch())
        throw UsageError(
            QStringLiteral("--port %1: a label consists of 1 to 32 letters, digits, \".\", \"_\" and \"-\".")
                .arg(value));
    if (equals + 1 == value.size())
        throw UsageError(QStringLiteral("--port %1: the device is missing, as in --port %2=/dev/ttyUSB0.")
                             .arg(value, label));
    return {label, value.mid(equals + 1)};
}

QStringList boardNames(const QList<NamedPort>& ports) {
    QStringList taken;
    QList<QStringList> choices;
    for (const NamedPort& port : ports) {
        taken += port.label;
        choices += port.label.isEmpty() ? namesFor(port.device) : QStringList();
    }
    QStringList names;
    for (qsizetype i = 0; i < ports.size(); ++i) {
        const auto isFree = [&](const QString& name) {
            for (qsizetype other = 0; other < ports.size(); ++other) {
                if (other != i && hasName(choices[other], name))
                    return false;
            }
            return !hasName(taken, name);
        };
        const auto free = std::find_if(choices[i].cbegin(), choices[i].cend(), isFree);
        if (!ports[i].label.isEmpty())
            names += ports[i].label;
        else if (free != choices[i].cend())
            names += *free;
        else
            names += QStringLiteral("%1-%2").arg(choices[i].constLast()).arg(i + 1);
    }
    return names;
}

} // namespace zrk

#include "machine/UsbInstance.h"

#include <QRegularExpression>

namespace zrk {

UsbInstance usbInstance(const QStringList& instanceIds) {
    static const QRegularExpression kIds(
        QStringLiteral("^[^\\\\]*\\\\VID_([0-9A-F]{4})[&+]PID_([0-9A-F]{4})(\\+[^\\\\]*)?(&MI_[^\\\\]*)?"
                       "\\\\(.*)$"),
        QRegularExpression::CaseInsensitiveOption);
    UsbInstance found;
    for (const QString& id : instanceIds) {
        const auto match = kIds.match(id);
        if (!match.hasMatch())
            break; // the hub: nothing above it belongs to the adapter
        const QString usbId = (match.captured(1) + QLatin1Char(':') + match.captured(2)).toLower();
        if (!found.usbId.isEmpty() && usbId != found.usbId)
            break;
        found.usbId = usbId;
        const QString ofBus = match.captured(3).mid(1);
        const QString last = match.captured(5);
        if (!ofBus.isEmpty())
            found.serialNumber = ofBus.chopped(1);
        else if (!last.contains(QLatin1Char('&')) && match.captured(4).isEmpty())
            found.serialNumber = last;
        if (!found.serialNumber.isEmpty())
            break;
    }
    return found;
}

} // namespace zrk

#include "files/SystemCodePage.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace zrk {
namespace {

/// Returns the code page; not CP_ACP, which is UTF-8 in a program whose manifest asks for it.
UINT systemCodePage() {
    DWORD number = 0;
    const int read =
        GetLocaleInfoEx(LOCALE_NAME_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                        reinterpret_cast<LPWSTR>(&number), sizeof number / sizeof(WCHAR));
    return read > 0 ? number : CP_ACP;
}

} // namespace

QString systemCodePageText(const QByteArray& bytes) {
    const UINT page = systemCodePage();
    const int size = static_cast<int>(bytes.size());
    const int length = MultiByteToWideChar(page, 0, bytes.constData(), size, nullptr, 0);
    if (length <= 0)
        return QString::fromLatin1(bytes);
    QString text(length, QChar::Null);
    MultiByteToWideChar(page, 0, bytes.constData(), size, reinterpret_cast<LPWSTR>(text.data()), length);
    return text;
}

} // namespace zrk

#include "machine/NativePort.h"
#include "platform/SerialPort.h"

#include <algorithm>
#include <array>
#include <windows.h>

namespace zrk {
namespace {

OpenResult openFailure(const boost::system::error_code& error) {
    switch (error.value()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_PATHNAME:
    case ERROR_INVALID_NAME:
        return {OpenFault::NoSuchDevice};
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
        // A port that another program has open is reported as "access denied".
        return {OpenFault::InUse};
    case ERROR_INVALID_PARAMETER:
    case ERROR_INVALID_FUNCTION:
    case ERROR_INVALID_HANDLE:
        return {OpenFault::NotASerialPort};
    default:
        return {OpenFault::Other, error.message()};
    }
}

/// Reads the line's settings, lets `change` edit them and writes them back; false if the device refuses.
template <typename Change>
bool changeSettings(HANDLE handle, Change change) noexcept {
    DCB line = {};
    line.DCBlength = sizeof line;
    if (!::GetCommState(handle, &line))
        return false;
    change(line);
    return ::SetCommState(handle, &line) != 0;
}

/// Notes the errors, since each query clears the marks, also one for something else.
bool noteErrors(HANDLE handle, COMSTAT& state, LineErrors& seen) noexcept {
    DWORD errors = 0;
    if (!::ClearCommError(handle, &errors, &state))
        return false;
    seen.framing += (errors & CE_FRAME) != 0 ? 1U : 0U;
    seen.parity += (errors & CE_RXPARITY) != 0 ? 1U : 0U;
    seen.overrun += (errors & (CE_OVERRUN | CE_RXOVER)) != 0 ? 1U : 0U;
    return true;
}

/// Sets raw bytes, both lines on, no handshake, whatever the last user of the port has left.
void makeRaw(DCB& line) noexcept {
    line.fBinary = TRUE;
    line.fNull = FALSE;
    line.fErrorChar = FALSE;
    line.fAbortOnError = FALSE;
    line.fOutxCtsFlow = FALSE;
    line.fOutxDsrFlow = FALSE;
    line.fDsrSensitivity = FALSE;
    line.fOutX = FALSE;
    line.fInX = FALSE;
    line.fDtrControl = DTR_CONTROL_ENABLE;
    line.fRtsControl = RTS_CONTROL_ENABLE;
}

/// A handle that is closed on every way out unless it is released.
class Handle {
  public:
    explicit Handle(HANDLE value) : m_value(value) {}
    ~Handle() {
        if (m_value != INVALID_HANDLE_VALUE)
            ::CloseHandle(m_value);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    [[nodiscard]] HANDLE get() const { return m_value; }
    HANDLE release() { return std::exchange(m_value, INVALID_HANDLE_VALUE); }

  private:
    HANDLE m_value;
};

/// Opens the device with the prefix, without which only ports of one digit can be opened.
HANDLE openDevice(const std::string& device) noexcept {
    const std::string name = device.starts_with('\\') ? device : "\\\\.\\" + device;
    return ::CreateFileA(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                         FILE_FLAG_OVERLAPPED, nullptr);
}

boost::system::error_code lastError() noexcept {
    return {static_cast<int>(::GetLastError()), boost::system::system_category()};
}

} // namespace

OpenResult foreseeOpening(const std::string& /*device*/) {
    return {}; // nothing shows before
}

OpenResult NativePort::open(const std::string& device) {
    Handle port(openDevice(device));
    if (port.get() == INVALID_HANDLE_VALUE)
        return openFailure(lastError());
    // The stream's own open would switch DTR and RTS off until we switch them on again, and a board that has
    // DTR wired to its reset would be reset by every open.
    COMMTIMEOUTS waits = {};
    waits.ReadIntervalTimeout = 1; // a read ends with what has come in one go, and never without a byte
    if (!changeSettings(port.get(), makeRaw) || !::SetCommTimeouts(port.get(), &waits))
        return openFailure(lastError());
    // The last user of the port may have left the line at a break. Some devices have none.
    (void)::ClearCommBreak(port.get());
    boost::system::error_code error;
    m_stream.assign(port.get(), error);
    if (error)
        return openFailure(error);
    m_handle = port.release();
    return {};
}

bool NativePort::applySettings(const LineSettings& settings) {
    // All at once: a driver may set its lines again with every change.
    return changeSettings(m_handle, [&settings](DCB& line) {
        line.BaudRate = static_cast<DWORD>(settings.baudRate);
        line.ByteSize = static_cast<BYTE>(settings.dataBits);
        line.fParity = settings.parity == 'N' ? FALSE : TRUE;
        line.Parity = settings.parity == 'E' ? EVENPARITY : settings.parity == 'O' ? ODDPARITY : NOPARITY;
        line.StopBits = settings.stopBits == 2 ? TWOSTOPBITS : ONESTOPBIT;
    });
}

void NativePort::close() noexcept {
    if (!m_stream.is_open())
        return;
    // A write that is under way would block the close on a stopped line. After the last write has ended, the
    // adapter may still hold its bytes, and a purge would drop them.
    if (m_isWriting || unsentBytes() > 0)
        ::PurgeComm(m_handle, PURGE_TXABORT | PURGE_TXCLEAR);
    ::PurgeComm(m_handle, PURGE_RXABORT | PURGE_RXCLEAR);
    boost::system::error_code ignored;
    m_stream.close(ignored);
}

// Not every adapter's driver ends a read when the adapter is pulled, but none answers for it afterwards.
std::chrono::milliseconds NativePort::lookInterval() const {
    return std::chrono::milliseconds(400);
}

boost::system::error_code NativePort::look() noexcept {
    constexpr long kNoSuchDevice = 433; // a name that the compiler's headers lack
    constexpr std::array kGone{
        ERROR_ACCESS_DENIED,     ERROR_INVALID_HANDLE, ERROR_BAD_COMMAND,    ERROR_GEN_FAILURE,
        ERROR_FILE_NOT_FOUND,    kNoSuchDevice,        ERROR_DEVICE_REMOVED, ERROR_DEVICE_NOT_CONNECTED,
        ERROR_OPERATION_ABORTED, ERROR_NOT_READY,      ERROR_IO_DEVICE};
    COMSTAT state = {};
    if (noteErrors(m_handle, state, m_seen))
        return {};
    const auto error = static_cast<int>(::GetLastError());
    // A device that does not support the query is there.
    if (std::find(kGone.begin(), kGone.end(), error) == kGone.end())
        return {};
    return {error, boost::system::system_category()};
}

void NativePort::discardReceived() noexcept {
    ::PurgeComm(m_handle, PURGE_RXCLEAR);
}

bool NativePort::setXonXoff(bool on) noexcept {
    // The stream's own flow control option would switch DTR and RTS, too.
    return changeSettings(m_handle, [on](DCB& line) {
        line.fOutX = on ? TRUE : FALSE;
        line.fInX = on ? TRUE : FALSE;
        line.fTXContinueOnXoff = TRUE;
        line.XonChar = 0x11;
        line.XoffChar = 0x13;
    });
}

bool NativePort::setDtr(bool on) noexcept {
    if (!::EscapeCommFunction(m_handle, on ? SETDTR : CLRDTR))
        return false;
    // Every later change of the settings sets the line again, to these settings.
    return changeSettings(
        m_handle, [on](DCB& line) { line.fDtrControl = on ? DTR_CONTROL_ENABLE : DTR_CONTROL_DISABLE; });
}

bool NativePort::holdLines(const LineSettings& settings) noexcept {
    if (settings.dtr && !setDtr(*settings.dtr))
        return false;
    if (!settings.rts)
        return true;
    const bool on = *settings.rts;
    return ::EscapeCommFunction(m_handle, on ? SETRTS : CLRRTS) && changeSettings(m_handle, [on](DCB& line) {
               line.fRtsControl = on ? RTS_CONTROL_ENABLE : RTS_CONTROL_DISABLE;
           });
}

std::size_t NativePort::unsentBytes() const noexcept {
    COMSTAT state = {};
    return noteErrors(m_handle, state, m_seen) ? state.cbOutQue : 0;
}

std::optional<LineErrors> NativePort::lineErrors() const noexcept {
    COMSTAT state = {};
    if (!noteErrors(m_handle, state, m_seen))
        return {};
    return m_seen;
}

} // namespace zrk

// Measures what a line carries when a program does nothing else: opens a port, writes blocks of 512 bytes one
// after the other, and prints the bytes a second, to compare with the loader's speed.
//
//   plain-writer PORT BYTES
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <windows.h>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const std::string device = std::string("\\\\.\\") + argv[1];
    const HANDLE port =
        CreateFileA(device.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    DCB line{};
    line.DCBlength = sizeof line;
    if (port == INVALID_HANDLE_VALUE || !GetCommState(port, &line))
        return 3;
    line.BaudRate = CBR_115200;
    line.ByteSize = 8;
    line.Parity = NOPARITY;
    line.StopBits = ONESTOPBIT;
    if (!SetCommState(port, &line))
        return 3;
    const std::vector<char> block(512, 'x');
    DWORD left = static_cast<DWORD>(std::atol(argv[2]));
    const double all = left;
    const auto begin = std::chrono::steady_clock::now();
    while (left > 0) {
        DWORD written = 0;
        if (!WriteFile(port, block.data(), std::min<DWORD>(left, 512), &written, nullptr))
            return 6;
        left -= written;
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    std::printf("%.0f\n", all / time.count());
    CloseHandle(port);
}

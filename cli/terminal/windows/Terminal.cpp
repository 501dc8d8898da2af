#include "cli/terminal/Terminal.h"

#include "cli/terminal/windows/IoLimit.h"
#include "cli/terminal/windows/StoppableWrite.h"
#include "support/Utf8.h"

#include <algorithm>
#include <memory>
#include <system_error>

#include <windows.h>

#include <shellapi.h>

namespace brevint::cli::Terminal {

namespace {

HANDLE Handle(Stream stream) {
    switch (stream) {
    case Stream::Input: return GetStdHandle(STD_INPUT_HANDLE);
    case Stream::Output: return GetStdHandle(STD_OUTPUT_HANDLE);
    case Stream::Error: break;
    }
    return GetStdHandle(STD_ERROR_HANDLE);
}

[[noreturn]] void ThrowLastError() {
    throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

/// Turns the echo of the console's input off while it lives.
class EchoOff {
public:
    EchoOff() {
        GetConsoleMode(Handle(Stream::Input), &m_before);
        SetConsoleMode(Handle(Stream::Input), (m_before & ~DWORD{ENABLE_ECHO_INPUT}) |
                                                  ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;
    ~EchoOff() { SetConsoleMode(Handle(Stream::Input), m_before); }

private:
    DWORD m_before = 0;
};

/// A line of what is no console. Nothing when the token was stopped or the input has ended.
std::optional<std::string> ReadBytes(const StopToken& stop) {
    const IoLimit limit(stop, std::chrono::milliseconds(0));
    std::string line;
    while (!stop.stop_requested()) {
        char c = 0;
        DWORD count = 0;
        const bool isRead =
            ReadFile(Handle(Stream::Input), &c, 1, &count, nullptr) != FALSE && count == 1;
        if (isRead && c != '\n') {
            line += c;
        } else if (isRead || (!line.empty() && !stop.stop_requested())) {
            return line;
        } else {
            break;
        }
    }
    return std::nullopt;
}

} // namespace

void Prepare() {}

std::vector<std::string> Arguments(int, char**) {
    // Those of `main` have been forced into the system's 8-bit code page.
    int count = 0;
    const std::unique_ptr<LPWSTR[], decltype(&LocalFree)> list(
        CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i) {
        arguments.push_back(Utf8::ToNarrow(list[static_cast<std::size_t>(i)]));
    }
    return arguments;
}

bool IsTerminal(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(Handle(stream), &mode) != FALSE;
}

bool IsCapable(Stream stream) {
    DWORD mode = 0;
    return GetConsoleMode(Handle(stream), &mode) &&
           SetConsoleMode(Handle(stream),
                          mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool HasColours(Stream stream) {
    const wchar_t* const forbidden = _wgetenv(L"NO_COLOR");
    return IsCapable(stream) && (!forbidden || *forbidden == L'\0');
}

std::size_t Width(Stream stream) {
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    const bool known = GetConsoleScreenBufferInfo(Handle(stream), &info) && info.dwSize.X > 0;
    return known ? static_cast<std::size_t>(info.dwSize.X) : 80;
}

bool IsOutput(const std::filesystem::path&) {
    return false; // no file name stands for it
}

void Write(Stream stream, std::string_view text, const StopToken& stop) {
    // A console takes UTF-16, whatever its code page; everything else is given UTF-8.
    if (IsTerminal(stream)) {
        const std::wstring wide = Utf8::ToWide(text);
        for (std::wstring_view rest = wide; !rest.empty();) {
            DWORD written = 0;
            if (!WriteConsoleW(Handle(stream), rest.data(),
                               static_cast<DWORD>(std::min<std::size_t>(rest.size(), 8192)),
                               &written, nullptr)) {
                ThrowLastError();
            }
            rest.remove_prefix(written);
        }
        return;
    }
    if (const std::error_code failed = WriteAll(Handle(stream), text, stop, PatienceWith(stream))) {
        throw std::system_error(failed);
    }
}

std::optional<std::string> ReadLine(const std::string& prompt, Echo echo, const StopToken& stop) {
    std::optional<EchoOff> echoOff;
    if (echo == Echo::Hidden) {
        echoOff.emplace();
    }
    Tell(prompt, stop);
    if (!IsTerminal(Stream::Input)) {
        return ReadBytes(stop);
    }
    std::wstring line;
    while (!stop.stop_requested()) {
        // Ctrl-C breaks off the read, with nothing read.
        wchar_t buffer[256];
        DWORD count = 0;
        if (!ReadConsoleW(Handle(Stream::Input), buffer, static_cast<DWORD>(std::size(buffer)),
                          &count, nullptr) ||
            count == 0) {
            break;
        }
        line.append(buffer, count);
        if (line.back() == L'\n') {
            line.erase(line.find_last_not_of(L"\r\n") + 1);
            return Utf8::ToNarrow(line);
        }
    }
    return std::nullopt;
}

} // namespace brevint::cli::Terminal

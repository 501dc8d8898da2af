#include "cli/terminal/Sink.h"

#include <algorithm>
#include <memory>

#include <windows.h>

namespace brevint::cli {

namespace {

std::error_code LastError() {
    return {static_cast<int>(GetLastError()), std::system_category()};
}

std::error_code WriteAll(HANDLE target, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        if (!WriteFile(target, bytes.data(),
                       static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20)), &written,
                       nullptr)) {
            return LastError();
        }
        bytes.remove_prefix(written);
    }
    return {};
}

} // namespace

struct Sink::Target {
    HANDLE handle = GetStdHandle(STD_OUTPUT_HANDLE);
    bool isOwned = false;

    ~Target() {
        if (isOwned) {
            CloseHandle(handle);
        }
    }
};

Sink::Sink() : m_target(std::make_unique<Target>()) {}

Sink::Sink(const std::filesystem::path& path, const StopToken&) : Sink() {
    HANDLE const opened = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        throw std::system_error(LastError());
    }
    m_target->handle = opened;
    m_target->isOwned = true;
}

Sink::~Sink() = default;

std::error_code Sink::Write(std::string_view bytes, const StopToken& stop) {
    HANDLE writer = nullptr;
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &writer, 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    const std::unique_ptr<void, decltype(&CloseHandle)> thread(writer, &CloseHandle);
    const auto cancel = [writer] {
        CancelSynchronousIo(writer);
    };
    const StopCallback<decltype(cancel)> onStop(stop, cancel);
    while (!bytes.empty() && !stop.stop_requested()) {
        constexpr std::size_t kBlock = 64 * 1024;
        const std::string_view block = bytes.substr(0, kBlock);
        if (const std::error_code failed = WriteAll(m_target->handle, block)) {
            return stop.stop_requested() ? std::make_error_code(std::errc::operation_canceled)
                                         : failed;
        }
        bytes.remove_prefix(block.size());
    }
    return stop.stop_requested() ? std::make_error_code(std::errc::operation_canceled)
                                 : std::error_code();
}

} // namespace brevint::cli

#include "cli/terminal/Sink.h"

#include "cli/terminal/windows/StoppableWrite.h"

namespace brevint::cli {

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
        throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
    }
    m_target->handle = opened;
    m_target->isOwned = true;
}

Sink::~Sink() = default;

std::error_code Sink::Write(std::string_view bytes, const StopToken& stop) {
    return WriteAll(m_target->handle, bytes, stop, std::nullopt);
}

} // namespace brevint::cli

#pragma once

#include <brevint/client/StopToken.h>

#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

namespace brevint::cli {

/// Where bytes go that cannot be taken back: standard output, a pipe or a device.
class Sink {
public:
    /// Standard output.
    Sink();
    /// A pipe or a device. Waits until a pipe has a reader, and throws std::system_error when it
    /// cannot be written to or the token was stopped.
    Sink(const std::filesystem::path& path, const StopToken& stop);
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink();

    /// Writes all of it, however long whoever reads takes. Fails with
    /// std::errc::operation_canceled when the token was stopped.
    std::error_code Write(std::string_view bytes, const StopToken& stop);

private:
    struct Target;
    std::unique_ptr<Target> m_target;
};

} // namespace brevint::cli

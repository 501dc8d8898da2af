#pragma once

#include "brevint/client/Error.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <system_error>

namespace brevint::detail {

/// A new folder that only the user can read, and that goes with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::error_code failed;
        std::random_device random;
        const auto number = (std::uint64_t{random()} << 32U) | random();
        m_path =
            std::filesystem::temp_directory_path(failed) / ("brevint-" + std::to_string(number));
        // A folder that is there already is another's.
        if (failed || !std::filesystem::create_directory(m_path, failed)) {
            throw Exception(
                {.failure = Failure::LocalFile, .text = "A temporary folder cannot be made."});
        }
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, failed);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};

} // namespace brevint::detail

#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

/// Writes a local file block by block, so that nobody sees a half of it.
///
/// The content goes to a part file in the destination's folder, which takes the destination's place
/// in one step once it is complete. Until then an old file stays as it was. The part file is made
/// exclusively and held open to the end, so that nothing is ever written to a file that somebody
/// else has put in its place.
///
/// - An old file's permissions are kept, its owner and group where the system allows it. If it was
///   read-only, the new one can be written.
/// - Links are followed: the link stays, and what it leads to is replaced. A target that is missing
///   is made, except on Windows, where the link itself is then replaced.
/// - Devices and pipes, and on Linux the streams under /proc (/dev/fd/3 is one), are written to
///   directly.
///
/// For one thread at a time. Nothing is thrown but std::bad_alloc; an operation that fails says
/// why, and after that only Abandon makes sense.
class LocalFileWriter {
public:
    LocalFileWriter();
    LocalFileWriter(const LocalFileWriter&) = delete;
    LocalFileWriter& operator=(const LocalFileWriter&) = delete;
    /// Abandons what was not finished.
    ~LocalFileWriter();

    /// Begins to write, and abandons what was begun before. Waits until a pipe has a reader.
    std::error_code Open(const std::filesystem::path& destination);

    /// Appends all of `bytes`. May wait for whoever reads a pipe.
    std::error_code Write(std::string_view bytes);

    /// Puts the file into place.
    std::error_code Finish();

    /// Takes the part file away. What a device or pipe has been sent is not taken back.
    void Abandon() noexcept;

    /// A name for a part file, which no other file has: ".brevint-", 16 digits, ".part".
    static std::string PartName();

private:
    struct Output;
    std::unique_ptr<Output> m_output;
};

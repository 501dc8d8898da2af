#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

class LocalFileOutput;

/// Writes a local file block by block, so that nobody sees a half of it.
///
/// The content goes to a part file in the destination's folder, which takes the destination's place
/// in one step once it is complete. Until then an old file stays as it was. The part file is held
/// open to the end, so that nothing is ever written to a file that somebody else has put in its
/// place.
///
/// - An old file's permissions are kept, its owner and group where the system allows it. If it was
///   read-only, the new one can be written.
/// - Links are followed: the link stays, and what it leads to is replaced. A target that is missing
///   is made, except on Windows, where the link itself is then replaced.
/// - Devices and pipes, and on Linux the streams under /proc (/dev/fd/3 is one), are written to
///   directly.
///
/// A resumable part can be kept, with a record of what its writer needs to know when it goes on.
/// While it is in the making, only the user has access to it. What a later writer finds is used if
/// it is a plain file of the user's own (on Windows, of the Administrators too) with one link,
/// which nobody else may write to, and if it was written to within seven days. Otherwise the part
/// is begun anew, and the record is gone.
///
/// For one thread at a time. Nothing is thrown but std::bad_alloc. An operation that fails says
/// why. After that only Abandon and Keep make sense, and Finish after a Finish that failed.
class LocalFileWriter {
public:
    /// What becomes of a part file that is not finished.
    enum class Part {
        Temporary, ///< It has a name of its own and goes when it is abandoned.
        Resumable, ///< Its name is derived from the destination's, so that a later writer finds it
                   ///< again.
    };

    LocalFileWriter();
    LocalFileWriter(const LocalFileWriter&) = delete;
    LocalFileWriter& operator=(const LocalFileWriter&) = delete;
    /// Abandons what was neither finished nor kept.
    ~LocalFileWriter();

    /// Begins to write, and abandons what was begun before. Waits until a pipe has a reader. Fails
    /// with std::errc::device_or_resource_busy, at once, while another writer of this process or
    /// another has the destination's resumable part.
    std::error_code Open(const std::filesystem::path& destination, Part part = Part::Temporary);

    /// Appends all of `bytes`, to what an earlier writer has left too. May wait for whoever reads a
    /// pipe.
    std::error_code Write(std::string_view bytes);

    /// Puts the file into place, and takes its record away. `durable`: the content is on the disk
    /// before the file takes its place, so that a machine that fails in between leaves the old file
    /// or the new one. When it fails, the part stays as it was, and Finish can be tried again: on
    /// Windows another program may have held the old file open.
    std::error_code Finish(bool durable);

    /// Takes the part file and its record away, unless somebody has put another file in the part's
    /// place. What a device or pipe has been sent is not taken back.
    void Abandon() noexcept;

    /// Bytes that an earlier writer has left and that were not cut off since. 0 for a new part, and
    /// for a destination that is written to directly.
    std::uint64_t Size() const noexcept;

    /// Cuts the part to `size` bytes, of which it must have as many, and goes on writing there. The
    /// record of one that is empty then is gone.
    std::error_code Truncate(std::uint64_t size);

    /// The record that lies beside the resumable part; empty when there is none, or none that may
    /// be used, or when it exceeds 64 KiB.
    std::string ReadRecord() const;

    /// Replaces the record of a resumable part in one step.
    std::error_code WriteRecord(std::string_view record);

    /// Closes a resumable part and leaves it and its record for a later writer. Abandons a
    /// temporary one.
    void Keep() noexcept;

    /// Whether the destination itself is written to: there is nothing to resume or to rename.
    bool IsDirect() const noexcept;

    /// A name for a part file, which no other file has: ".brevint-", 16 digits, ".part".
    static std::string PartName();

private:
    std::unique_ptr<LocalFileOutput> m_output;
};

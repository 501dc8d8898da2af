#pragma once

#include "requests/MultipartFrame.h"
#include "support/Files.h"
#include "transport/IStreamingExchange.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace transfers {

/// A local file as the body of a form. It fails when the file changes before all of it is read, and
/// when the file holds what would end the form.
class FormSource final : public IBodySource {
public:
    /// Told how many bytes of the file have been read.
    using OnProgress = std::function<void(std::uint64_t)>;

    explicit FormSource(std::filesystem::path path) : m_path(std::move(path)) {}

    /// Opens the file, from its beginning. False when there is no readable regular file.
    bool Open();
    std::uint64_t FileSize() const { return m_fileSize; }
    void SetOnProgress(OnProgress onProgress) { m_onProgress = std::move(onProgress); }
    /// The whole body has been handed out: the service may have it.
    bool IsUsedUp() const { return m_offset == Size(); }
    /// It failed because the file holds what would end the form.
    bool WouldEndForm() const { return m_wouldEndForm; }

    std::uint64_t Size() const override;
    std::size_t Read(char* buffer, std::size_t size) override;

private:
    bool HasChanged() const;
    /// Whether the form would end with these bytes, or before them and in them.
    bool EndsForm(std::string_view bytes);

    const std::filesystem::path m_path;
    MultipartFrame m_frame;
    FilePtr m_file;
    std::uint64_t m_fileSize = 0;
    std::filesystem::file_time_type m_modified;
    std::uint64_t m_offset = 0; ///< In the body.
    std::string m_seam;         ///< The last bytes handed out; one less than the delimiter has.
    bool m_wouldEndForm = false;
    OnProgress m_onProgress;
};

} // namespace transfers

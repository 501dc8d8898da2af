#pragma once

#include "brevint/c.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

namespace brevint::test {

/// Longer than any transfer of a test takes.
inline constexpr std::uint32_t kLongEnough = 120'000;

struct ClientFree {
    void operator()(brevint_client* client) const noexcept { brevint_client_free(client); }
};
struct QueueFree {
    void operator()(brevint_queue* queue) const noexcept { brevint_queue_free(queue); }
};
struct TransferFree {
    void operator()(brevint_transfer* transfer) const noexcept { brevint_transfer_free(transfer); }
};
using Client = std::unique_ptr<brevint_client, ClientFree>;
using Queue = std::unique_ptr<brevint_queue, QueueFree>;
using TransferPtr = std::unique_ptr<brevint_transfer, TransferFree>;

/// A queue that loses no time between attempts.
inline Queue MakeQueue(const std::string& url, std::uint32_t concurrent = 4,
                       std::uint32_t stallLimit = 60'000) {
    brevint_queue_settings settings;
    brevint_queue_settings_init(&settings, sizeof settings);
    settings.concurrent = concurrent;
    settings.first_pause = 1;
    settings.longest_pause = 1;
    settings.stall_limit = stallLimit;
    const Client client(brevint_client_new(url.c_str(), nullptr, nullptr));
    return Queue(brevint_queue_new(client.get(), &settings));
}

/// As the interface takes it.
inline std::string Utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

using Listener = std::function<void(brevint_transfer*, const brevint_progress&)>;

inline void CallListener(void* user, brevint_transfer* transfer, const brevint_progress* progress) {
    (*static_cast<Listener*>(user))(transfer, *progress);
}

inline TransferPtr StartDownload(const Queue& queue, const std::string& id,
                                 const std::filesystem::path& path,
                                 std::uint64_t listedSize = BREVINT_UNKNOWN_SIZE,
                                 Listener* listener = nullptr) {
    brevint_download request;
    brevint_download_init(&request, sizeof request);
    const std::string destination = Utf8(path);
    request.item_id = id.c_str();
    request.destination = destination.c_str();
    request.listed_size = listedSize;
    request.listener = listener ? CallListener : nullptr;
    request.user = listener;
    return TransferPtr(brevint_queue_download(queue.get(), &request));
}

inline TransferPtr StartUpload(const Queue& queue, const char* folderId, const char* fileId,
                               const std::filesystem::path& path) {
    brevint_upload request;
    brevint_upload_init(&request, sizeof request);
    const std::string local = Utf8(path);
    request.folder_id = folderId;
    request.file_id = fileId;
    request.local_path = local.c_str();
    return TransferPtr(brevint_queue_upload(queue.get(), &request));
}

inline brevint_outcome Outcome(const TransferPtr& transfer) {
    brevint_outcome outcome;
    brevint_outcome_init(&outcome, sizeof outcome);
    if (brevint_transfer_wait(transfer.get(), kLongEnough) != 0) {
        brevint_transfer_outcome(transfer.get(), &outcome);
    }
    return outcome;
}

inline std::string Contents(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

inline void Store(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

/// How many files a folder holds, part files included.
inline std::ptrdiff_t FileCount(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

} // namespace brevint::test

#include "bench/Transfers.h"

#include <brevint/c.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <limits>
#include <memory>

namespace {

struct QueueFree {
    void operator()(brevint_queue* queue) const { brevint_queue_free(queue); }
};
struct TransferFree {
    void operator()(brevint_transfer* transfer) const { brevint_transfer_free(transfer); }
};
using Queue = std::unique_ptr<brevint_queue, QueueFree>;
using Transfer = std::unique_ptr<brevint_transfer, TransferFree>;

Queue NewQueue(const TaskArguments& arguments) {
    brevint_queue_settings settings;
    brevint_queue_settings_init(&settings, sizeof settings);
    settings.concurrent = static_cast<std::uint32_t>(arguments.atOnce);
    brevint_client* const client = brevint_client_new(arguments.url.c_str(), nullptr, nullptr);
    Queue queue(brevint_queue_new(client, &settings));
    brevint_client_free(client);
    return queue;
}

void AwaitSuccess(const Transfer& transfer) {
    brevint_transfer_wait(transfer.get(), std::numeric_limits<std::uint32_t>::max());
    brevint_outcome outcome;
    brevint_outcome_init(&outcome, sizeof outcome);
    Require(brevint_transfer_outcome(transfer.get(), &outcome) != 0 &&
                outcome.state == BREVINT_TRANSFER_FINISHED,
            "the transfer failed");
}

void Fetch(const TaskArguments& arguments, Stopwatch& watch, const char* suffix, bool durable) {
    const std::string id = std::to_string(arguments.size) + suffix;
    watch.Start();
    {
        const Queue queue = NewQueue(arguments);
        std::vector<Transfer> transfers;
        for (std::size_t i = 0; i < arguments.count; ++i) {
            const std::string destination = arguments.file + std::to_string(i);
            brevint_download what;
            brevint_download_init(&what, sizeof what);
            what.item_id = id.c_str();
            what.destination = destination.c_str();
            what.durable = durable ? 1 : 0;
            transfers.emplace_back(brevint_queue_download(queue.get(), &what));
        }
        std::ranges::for_each(transfers, AwaitSuccess);
    }
    watch.Stop();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        Require(std::filesystem::file_size(arguments.file + std::to_string(i)) == arguments.size,
                "a file is not whole");
    }
}

void StopAtJob(void* watch, brevint_transfer*, const brevint_progress* progress) {
    if (progress->state == BREVINT_TRANSFER_PROCESSING) {
        static_cast<Stopwatch*>(watch)->Stop();
    }
}

void NoteFirstBytes(void* hasBytes, brevint_transfer*, const brevint_progress* progress) {
    auto& flag = *static_cast<std::atomic<bool>*>(hasBytes);
    if (progress->bytes_done > 0) {
        flag = true;
        flag.notify_one();
    }
}

} // namespace

void TransferDown(const TaskArguments& arguments, Stopwatch& watch) {
    Fetch(arguments, watch, "", false);
}

void TransferDownInChunks(const TaskArguments& arguments, Stopwatch& watch) {
    Fetch(arguments, watch, "-chunked", false);
}

void TransferDownDurably(const TaskArguments& arguments, Stopwatch& watch) {
    Fetch(arguments, watch, "", true);
}

void TransferUp(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const Queue queue = NewQueue(arguments);
    brevint_upload what;
    brevint_upload_init(&what, sizeof what);
    what.folder_id = "1";
    what.local_path = arguments.file.c_str();
    what.listener = StopAtJob;
    what.user = &watch;
    AwaitSuccess(Transfer(brevint_queue_upload(queue.get(), &what)));
}

void CancelSilent(const TaskArguments& arguments, Stopwatch& watch) {
    const std::string id = std::to_string(arguments.size) + "-silent";
    const Queue queue = NewQueue(arguments);
    std::vector<Stopwatch::Duration> times;
    for (std::size_t i = 0; i < arguments.count; ++i) {
        std::atomic<bool> hasBytes = false;
        brevint_download what;
        brevint_download_init(&what, sizeof what);
        what.item_id = id.c_str();
        what.destination = arguments.file.c_str();
        what.listener = NoteFirstBytes;
        what.user = &hasBytes;
        Transfer transfer(brevint_queue_download(queue.get(), &what));
        hasBytes.wait(false);
        Stopwatch cancel;
        cancel.Start();
        brevint_transfer_cancel(transfer.get());
        transfer.reset();
        cancel.Stop();
        times.push_back(cancel.Elapsed());
    }
    std::ranges::sort(times);
    watch.Add(times.at(times.size() * 99 / 100));
}

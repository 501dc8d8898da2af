#include "c/Queue.h"
#include "transfers/Download.h"
#include "transfers/Upload.h"
#include "transport/StreamingExchange.h"

#include <exception>
#include <memory>
#include <mutex>
#include <new>

namespace {

using namespace c;
using transfers::Transfer;

brevint_progress ToC(const transfers::TransferProgress& progress) {
    brevint_progress result = Blank<brevint_progress>();
    result.state = static_cast<std::int32_t>(progress.state);
    result.bytes_done = progress.done;
    result.bytes_total = progress.total;
    result.bytes_per_second = progress.bytesPerSecond;
    result.seconds_left = progress.secondsLeft;
    result.bytes_resumed = progress.resumed;
    return result;
}

} // namespace

namespace c {

OutcomeTexts::OutcomeTexts(const transfers::TransferOutcome& outcome)
    : text(Utf8::ToNarrow(outcome.text)), serverMessage(Utf8::ToNarrow(outcome.serverMessage)),
      localPath(Narrow(outcome.localPath)), itemId(Utf8::ToNarrow(outcome.itemId)),
      jobId(Utf8::ToNarrow(outcome.jobId)) {}

brevint_outcome ToC(const transfers::TransferOutcome& outcome, transfers::TransferState state,
                    const OutcomeTexts& texts) {
    brevint_outcome result = Blank<brevint_outcome>();
    result.state = static_cast<std::int32_t>(state);
    result.code = static_cast<std::int32_t>(outcome.code);
    result.http_status = static_cast<std::uint32_t>(outcome.status);
    result.connection = static_cast<std::int32_t>(outcome.failure);
    result.text = texts.text.c_str();
    result.server_message = texts.serverMessage.c_str();
    result.local_path = texts.localPath.c_str();
    result.item_id = texts.itemId.c_str();
    result.job_id = texts.jobId.c_str();
    result.verified = outcome.verified ? 1 : 0;
    result.job_goes_on = outcome.jobGoesOn ? 1 : 0;
    result.may_have_happened = outcome.mayHaveHappened ? 1 : 0;
    result.kept_beside = outcome.keptBeside ? 1 : 0;
    const calls::FailureKind kind =
        outcome.kind != calls::FailureKind::None
            ? outcome.kind
            : calls::KindOf(outcome.code, outcome.status, outcome.failure);
    result.failure = static_cast<std::int32_t>(kind);
    result.hint = Hint(outcome.code);
    return result;
}

} // namespace c

struct brevint_transfer {
    std::shared_ptr<Transfer> transfer;

    mutable std::mutex mutex;                          ///< Guards the texts.
    mutable std::unique_ptr<const OutcomeTexts> texts; ///< Made when somebody asks.
};

namespace {

/// Makes a transfer and its handle, which the listener is told, and begins it.
template <class Kind, class Request>
brevint_transfer* Begin(brevint_queue* queue, Request request, brevint_listener listener,
                        void* user) noexcept {
    try {
        auto handle = std::make_unique<brevint_transfer>();
        transfers::TransferListener call;
        if (listener) {
            call = [listener, user, raw = handle.get()](const auto& progress) {
                const brevint_progress told = ToC(progress);
                listener(user, raw, &told);
            };
        }
        handle->transfer =
            std::make_shared<Kind>(queue->service, std::move(request), std::move(call));
        queue->queue->Add(handle->transfer);
        return handle.release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

/// Does what has no way to tell a failure, which can only be lack of memory.
template <class Work>
void Unfailing(Work work) noexcept {
    try {
        work();
    } catch (const std::exception&) {
        // Nothing to do: what could not be reached is as it was.
    }
}

} // namespace

void brevint_queue_settings_init(brevint_queue_settings* settings, size_t size) {
    const transfers::TransferSettings defaults;
    const auto count = [](std::chrono::milliseconds time) {
        return static_cast<std::uint32_t>(time.count());
    };
    auto result = Blank<brevint_queue_settings>();
    result.concurrent = defaults.concurrent;
    result.attempts = defaults.attempts;
    result.first_pause = count(defaults.firstPause);
    result.longest_pause = count(defaults.longestPause);
    result.stall_limit = count(defaults.stallLimit);
    result.reply_limit = count(defaults.replyLimit);
    Initialise(result, settings, size);
}

void brevint_progress_init(brevint_progress* progress, size_t size) {
    Initialise<brevint_progress>({}, progress, size);
}

void brevint_outcome_init(brevint_outcome* outcome, size_t size) {
    Initialise<brevint_outcome>({}, outcome, size);
}

void brevint_download_init(brevint_download* download, size_t size) {
    auto defaults = Blank<brevint_download>();
    defaults.listed_size = BREVINT_UNKNOWN_SIZE;
    Initialise(defaults, download, size);
}

void brevint_upload_init(brevint_upload* upload, size_t size) {
    Initialise<brevint_upload>({}, upload, size);
}

brevint_queue* brevint_queue_new(const brevint_client* client,
                                 const brevint_queue_settings* settings) {
    const brevint_queue_settings given = Complete(settings, brevint_queue_settings_init);
    transfers::TransferSettings own;
    own.concurrent = std::max(given.concurrent, 1U);
    own.attempts = std::max(given.attempts, 1U);
    own.firstPause = std::chrono::milliseconds(given.first_pause);
    own.longestPause = std::chrono::milliseconds(given.longest_pause);
    own.stallLimit = std::chrono::milliseconds(given.stall_limit);
    own.replyLimit = std::chrono::milliseconds(given.reply_limit);
    try {
        auto queue = std::make_unique<brevint_queue>();
        queue->service = std::make_shared<transfers::Service>(
            client->service->Url(), own, std::make_shared<StreamingExchangeFactory>());
        queue->queue = std::make_shared<transfers::TransferQueue>(own);
        return queue.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void brevint_queue_free(brevint_queue* queue) {
    const std::unique_ptr<brevint_queue> owned(queue);
    if (queue) {
        Unfailing([&] { queue->queue->CancelAll(); });
    }
}

void brevint_queue_signed_in(brevint_queue* queue) {
    Unfailing([&] { queue->queue->OnSignedIn(); });
}

brevint_transfer* brevint_queue_download(brevint_queue* queue, const brevint_download* download) {
    const brevint_download given = Complete(download, brevint_download_init);
    try {
        return Begin<transfers::Download>(
            queue,
            transfers::DownloadRequest{.itemId = Wide(given.item_id),
                                       .destination = Path(given.destination),
                                       .listedSize = given.listed_size,
                                       .durable = given.durable != 0,
                                       .keepsPart = given.keeps_part != 0},
            given.listener, given.user);
    } catch (const std::exception&) {
        return nullptr;
    }
}

brevint_transfer* brevint_queue_upload(brevint_queue* queue, const brevint_upload* upload) {
    using Kind = transfers::UploadRequest::Kind;
    const brevint_upload given = Complete(upload, brevint_upload_init);
    try {
        return Begin<transfers::Upload>(
            queue,
            transfers::UploadRequest{.kind = given.folder_id ? Kind::NewFile : Kind::Content,
                                     .target =
                                         Wide(given.folder_id ? given.folder_id : given.file_id),
                                     .path = Path(given.local_path)},
            given.listener, given.user);
    } catch (const std::exception&) {
        return nullptr;
    }
}

void brevint_transfer_progress(const brevint_transfer* transfer, brevint_progress* progress) {
    Store(ToC(transfer->transfer->GetProgress()), progress);
}

int32_t brevint_transfer_wait(const brevint_transfer* transfer, uint32_t milliseconds) {
    return transfer->transfer->Wait(std::chrono::milliseconds(milliseconds)) ? 1 : 0;
}

int32_t brevint_transfer_outcome(const brevint_transfer* transfer, brevint_outcome* outcome) {
    const transfers::TransferOutcome* const known = transfer->transfer->GetOutcome();
    if (!known) {
        return 0;
    }
    try {
        const std::scoped_lock lock(transfer->mutex);
        if (!transfer->texts) {
            transfer->texts = std::make_unique<OutcomeTexts>(*known);
        }
    } catch (const std::exception&) {
        return 0;
    }
    Store(ToC(*known, transfer->transfer->GetProgress().state, *transfer->texts), outcome);
    return 1;
}

void brevint_transfer_cancel(brevint_transfer* transfer) {
    transfer->transfer->Cancel();
}

int32_t brevint_transfer_finish(brevint_transfer* transfer) {
    return transfer->transfer->Finish() ? 1 : 0;
}

void brevint_transfer_free(brevint_transfer* transfer) {
    const std::unique_ptr<brevint_transfer> owned(transfer);
    if (transfer) {
        transfer->transfer->LetGo();
    }
}

#include "cli/Jobs.h"

#include "brevint/IPollStatusResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/Failure.h"
#include "cli/Utf8.h"
#include "cli/Verdict.h"
#include "cli/Wait.h"

#include <memory>

namespace brevint::cli {

using namespace std::chrono_literals;

std::optional<std::string> PollJob(Context& context, JobKind kind, const std::wstring& jobId,
                                   const std::string& summary) {
    constexpr int finished = 1;
    Service& service = context.TheService();
    const auto repository = service.Repository();
    const std::unique_ptr<IPollStatusResponse> response(
        kind == JobKind::Upload ? repository->PollUploadFileStatus(service.Url(), jobId)
                                : repository->PollOverwriteFileStatus(service.Url(), jobId));
    RequireSuccess(response.get(), summary);
    if (response->GetStatus() != finished) {
        return std::nullopt;
    }
    return ToUtf8(response->GetItemId());
}

std::string AwaitJob(Context& context, JobKind kind, const std::wstring& jobId,
                     const std::string& name, const std::string& summary) {
    const std::string hint = "The job goes on; see how it stands with brevint job " +
                             ToUtf8(jobId) + (kind == JobKind::Overwrite ? " --of replace." : ".");
    Interrupt interrupt;
    Progress progress("The service processes " + name);
    std::optional<std::string> itemId;
    const auto poll = [&] {
        itemId = PollJob(context, kind, jobId, summary);
        return itemId.has_value();
    };
    switch (WaitUntil(poll, {100ms, 5s, context.Timeout()}, interrupt, progress)) {
    case WaitResult::Done: break;
    case WaitResult::TimedOut:
        throw Failure(ExitCode::TimedOut,
                      name + " is still being processed after " +
                          std::to_string(context.Timeout().count()) + " seconds.",
                      hint);
    case WaitResult::Interrupted:
        throw Failure(ExitCode::Interrupted, name + " is still being processed. Interrupted.",
                      hint);
    }
    return *itemId;
}

Outcome FinishSending(Context& context, JobKind kind, const IJobResponse& sent, bool wait,
                      const std::string& name, const std::string& summary) {
    const std::wstring jobId = sent.GetJobId();
    const std::string jobText = ToUtf8(jobId);
    if (!wait) {
        return {jobText, {{"jobId", jobText}, {"finished", false}}};
    }
    const std::string itemId = AwaitJob(context, kind, jobId, name, summary);
    return {itemId + "  " + name, {{"jobId", jobText}, {"finished", true}, {"id", itemId}}};
}

} // namespace brevint::cli

#include "cli/transfer/Jobs.h"

#include "brevint/IPollStatusResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "brevint/JobStatus.h"
#include "brevint/OverwriteFileResponse.h"
#include "brevint/UploadFileResponse.h"
#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "cli/output/SizeText.h"
#include "cli/service/Wait.h"
#include "support/Utf8.h"

#include <cerrno>
#include <fstream>
#include <memory>

namespace brevint::cli {

using namespace std::chrono_literals;

namespace {

std::optional<std::string> Poll(Context& context, JobKind kind, const std::wstring& jobId,
                                const std::string& doing, const std::string& summary) {
    const auto response = context.TheService().Call(
        summary,
        [kind, jobId](Service& service) {
            const auto repository = service.Repository();
            return kind == JobKind::Upload
                       ? repository->PollUploadFileStatus(service.Url(), jobId)
                       : repository->PollOverwriteFileStatus(service.Url(), jobId);
        },
        doing);
    if (response->GetStatus() != JobStatus::Finished) {
        return std::nullopt;
    }
    return Utf8::ToNarrow(response->GetItemId());
}

/// The path of a local file that is to be sent, in the library's form. Throws a Failure unless it
/// is a file that can be read.
std::wstring CheckLocalFile(const std::string& path) {
    const std::filesystem::path file = ToPath(path);
    std::error_code reason;
    const std::filesystem::file_status status = std::filesystem::status(file, reason);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw Failure(ExitCode::LocalFile, "\"" + path + "\" is not a file.");
    }
    if (!std::ifstream(file, std::ios::binary)) {
        throw LocalFailure("\"" + path + "\" cannot be read",
                           std::error_code(errno, std::generic_category()));
    }
    return Utf8::ToWide(path);
}

} // namespace

std::optional<std::string> PollJob(Context& context, JobKind kind, const std::wstring& jobId,
                                   const std::string& summary) {
    return Poll(context, kind, jobId, "Asking for the job", summary);
}

std::string AwaitJob(Context& context, JobKind kind, const std::wstring& jobId,
                     const std::string& name, const std::string& summary) {
    const std::string hint = "The job goes on; see how it stands with brevint job " +
                             Utf8::ToNarrow(jobId) +
                             (kind == JobKind::Overwrite ? " --of replace." : ".");
    Interrupt interrupt;
    Progress progress(name + ": sent, being processed,");
    std::string itemId;
    const auto poll = [&] {
        const std::optional<std::string> known = Poll(context, kind, jobId, {}, summary);
        itemId = known.value_or("");
        return known.has_value();
    };
    try {
        WaitUntil(poll, {100ms, 5s, context.Timeout()}, interrupt, progress,
                  name + " is still being processed.", hint);
    } catch (Failure& failure) {
        // What broke off is the connection, and not the job.
        if (failure.exitCode == ExitCode::NoConnection || failure.exitCode == ExitCode::TimedOut) {
            failure.hint = hint;
        }
        throw;
    }
    return itemId;
}

Outcome SendFile(Context& context, JobKind kind, const std::wstring& target,
                 const std::string& file, bool wait, const std::string& summary) {
    const std::wstring path = CheckLocalFile(file);
    const std::string doing =
        file + ": sending " + FormatSize(std::filesystem::file_size(ToPath(file))) + ",";
    const std::unique_ptr<IJobResponse> sent = context.TheService().Call(
        summary,
        [kind, target, path](Service& service) -> IJobResponse* {
            const auto repository = service.Repository();
            if (kind == JobKind::Upload) {
                return repository->UploadFile(service.Url(), target, path);
            }
            return repository->OverwriteFile(service.Url(), target, path);
        },
        doing);
    const std::wstring jobId = sent->GetJobId();
    const std::string jobText = Utf8::ToNarrow(jobId);
    if (!wait) {
        return {jobText, {{"jobId", jobText}, {"finished", false}}};
    }
    const std::string itemId = AwaitJob(context, kind, jobId, file, summary);
    return {itemId + "  " + file, {{"jobId", jobText}, {"finished", true}, {"id", itemId}}};
}

} // namespace brevint::cli

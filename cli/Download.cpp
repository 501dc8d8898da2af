#include "cli/Download.h"

#include "brevint/ErrorCodes.h"
#include "brevint/IDownloadFileResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/Failure.h"
#include "cli/SizeText.h"
#include "cli/TemporaryFile.h"
#include "cli/Utf8.h"
#include "cli/Verdict.h"
#include "cli/Wait.h"

#include <cerrno>
#include <fstream>
#include <memory>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

/// Only a file may be replaced: no folder, and no device or pipe either.
void RequireReplaceable(const std::filesystem::path& target) {
    std::error_code reason;
    const std::filesystem::file_status status = std::filesystem::status(target, reason);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw Failure(ExitCode::LocalFile,
                      "\"" + PathToUtf8(target) + "\" is there already, and is not a file.");
    }
}

/// Makes the file, empty, so that a folder that cannot be written to shows before the transfer.
void MakeEmptyFile(const std::filesystem::path& path) {
    if (!std::ofstream(path, std::ios::binary)) {
        throw LocalFailure("A file in the folder \"" + PathToUtf8(path.parent_path()) +
                               "\" cannot be made",
                           std::error_code(errno, std::generic_category()));
    }
}

/// Whether the service lists the file as one without content. Its download is an empty reply, which
/// looks like one that broke off.
bool IsListedAsEmpty(Context& context, const std::wstring& fileId, const std::string& name) {
    try {
        const std::string path = AskPath(context.TheService(), fileId, name);
        const CFolderItem item = context.Items().Find(path);
        return item.GetUniqueId() == fileId && ParseSize(ToUtf8(item.GetSize())) == 0U;
    } catch (const Failure&) {
        return false; // the download's own failure is the one to tell
    }
}

} // namespace

std::uintmax_t Download(Context& context, const std::wstring& fileId, const std::string& name,
                        const std::filesystem::path& target) {
    RequireReplaceable(target);
    const std::string summary = name + " cannot be downloaded.";
    Service& service = context.TheService();

    // In this order, so that a transfer that is given up ends first, before its file is deleted.
    Interrupt interrupt;
    TemporaryFile file(std::filesystem::absolute(target).parent_path());
    std::unique_ptr<IDownloadFileResponse> response;
    const std::unique_ptr<IRepositoryProxy> repository = service.Repository();

    MakeEmptyFile(file.Path());
    Progress progress("Downloading " + name);
    response.reset(
        repository->DownloadFile(service.Url(), fileId, ToWide(PathToUtf8(file.Path()))));
    if (!response) {
        RequireSuccess(nullptr, summary);
    }
    switch (WaitUntil([&response] { return response->IsComplete(); },
                      {5ms, 500ms, context.Timeout()}, interrupt, progress)) {
    case WaitResult::Done: break;
    case WaitResult::TimedOut:
        throw Failure(ExitCode::TimedOut,
                      summary + " It is not there after " +
                          std::to_string(context.Timeout().count()) + " seconds.",
                      "Allow more time with --timeout.");
    case WaitResult::Interrupted: throw Failure(ExitCode::Interrupted, summary + " Interrupted.");
    }
    const bool isEmptyFile = response->GetErrorCode() == ErrorCode::EmptyReply &&
                             StatusOf(*response) == 200 && IsListedAsEmpty(context, fileId, name);
    if (!isEmptyFile) {
        RequireSuccess(response.get(), summary);
    }
    const std::uintmax_t size = std::filesystem::file_size(file.Path());
    file.MoveTo(target);
    return size;
}

} // namespace brevint::cli

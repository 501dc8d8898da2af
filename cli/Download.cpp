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

std::string ProgressText(const RemoteFile& file) {
    return file.name + ": downloading" + (file.size ? " " + FormatSize(*file.size) : "") + ",";
}

/// Throws a Failure unless the reply is the whole file. `summary` begins it.
void RequireWhole(const IDownloadFileResponse& response, const RemoteFile& file,
                  const std::filesystem::path& received, const std::string& summary) {
    // The download of a file without content is an empty reply, which looks like one that broke
    // off.
    const bool isEmptyFile = response.GetErrorCode() == ErrorCode::EmptyReply &&
                             StatusOf(response) == 200 && file.size == 0U;
    if (!isEmptyFile) {
        RequireSuccess(&response, summary);
    }
    const std::uintmax_t size = std::filesystem::file_size(received);
    if (file.size && *file.size != size) {
        throw Failure(ExitCode::NoConnection,
                      summary + " Of " + std::to_string(*file.size) + " bytes listed, " +
                          std::to_string(size) + " came.",
                      "Try again: the transfer may have broken off, or the file have changed.");
    }
}

} // namespace

std::uintmax_t Download(Context& context, const RemoteFile& file,
                        const std::filesystem::path& target) {
    RequireReplaceable(target);
    const std::string summary = file.name + " cannot be downloaded.";
    Service& service = context.TheService();

    // In this order, so that a transfer that is given up ends first, before its file is deleted.
    Interrupt interrupt;
    TemporaryFile temporary(std::filesystem::absolute(target).parent_path());
    std::unique_ptr<IDownloadFileResponse> response;
    const std::unique_ptr<IRepositoryProxy> repository = service.Repository();

    MakeEmptyFile(temporary.Path());
    Progress progress(ProgressText(file));
    response.reset(
        repository->DownloadFile(service.Url(), file.id, ToWide(PathToUtf8(temporary.Path()))));
    if (!response) {
        RequireSuccess(nullptr, summary);
    }
    WaitUntil([&response] { return response->IsComplete(); }, {2ms, 500ms, context.Timeout()},
              interrupt, progress, summary);
    RequireWhole(*response, file, temporary.Path(), summary);
    const std::uintmax_t size = std::filesystem::file_size(temporary.Path());
    temporary.MoveTo(target);
    return size;
}

} // namespace brevint::cli

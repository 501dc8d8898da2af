#include "cli/transfer/Download.h"

#include "brevint/ErrorCodes.h"
#include "brevint/IDownloadFileResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "cli/output/Failure.h"
#include "cli/output/Paths.h"
#include "cli/output/SizeText.h"
#include "cli/service/Verdict.h"
#include "cli/service/Wait.h"
#include "cli/terminal/Terminal.h"
#include "support/LocalFileWriter.h"

#include <memory>
#include <string_view>

namespace brevint::cli {

namespace {

using namespace std::chrono_literals;

/// A download that has come as a whole. Shared with writes that are left behind.
using Received = std::shared_ptr<const IDownloadFileResponse>;

std::string Summary(const RemoteFile& file) {
    return file.name + " cannot be downloaded.";
}

std::string ProgressText(const RemoteFile& file) {
    return file.name + ": downloading" + (file.size ? " " + FormatSize(*file.size) : "") + ",";
}

std::string_view Content(const IDownloadFileResponse& response) {
    return {response.GetServerResponse().data(), response.GetServerResponse().size()};
}

/// Throws a Failure unless the reply is the whole file.
void RequireWhole(const IDownloadFileResponse& response, const RemoteFile& file) {
    // The download of a file without content is an empty reply, which looks like one that broke
    // off.
    const bool isEmptyFile = response.GetErrorCode() == ErrorCode::EmptyReply &&
                             StatusOf(response) == 200 && file.size == 0U;
    if (!isEmptyFile) {
        RequireSuccess(&response, Summary(file));
    }
    const std::uintmax_t size = Content(response).size();
    if (file.size && *file.size != size) {
        throw Failure(ExitCode::NoConnection,
                      Summary(file) + " Of " + std::to_string(*file.size) + " bytes listed, " +
                          std::to_string(size) + " came.",
                      "Try again: the transfer may have broken off, or the file have changed.");
    }
}

Received Receive(Context& context, const RemoteFile& file, Interrupt& interrupt) {
    // The library opens its destination by name once all has come, when somebody else may have put
    // another file there. It keeps the bytes too, and they are written from here.
    constexpr bool kWindows = std::filesystem::path::preferred_separator == '\\';
    constexpr const wchar_t* kNowhere = kWindows ? L"NUL" : L"/dev/null";
    Service& service = context.TheService();
    // In this order, so that a transfer that is given up ends before its response is deleted.
    std::unique_ptr<IDownloadFileResponse> response;
    const std::unique_ptr<IRepositoryProxy> repository = service.Repository();
    Progress progress(ProgressText(file));
    response.reset(repository->DownloadFile(service.Url(), file.id, kNowhere));
    if (!response) {
        RequireSuccess(nullptr, Summary(file));
    }
    WaitUntil([&response] { return response->IsComplete(); }, {2ms, 500ms, context.Timeout()},
              interrupt, progress, Summary(file));
    RequireWhole(*response, file);
    return response;
}

void RequireWritten(const std::error_code& reason, const std::filesystem::path& target) {
    if (reason) {
        throw LocalFailure("\"" + PathToUtf8(target) + "\" cannot be written", reason);
    }
}

void WriteFile(const std::filesystem::path& target, const IDownloadFileResponse& response,
               LocalFileWriter& writer, const std::function<void()>& betweenBlocks) {
    constexpr std::size_t kBlock = 1U << 20;
    std::string_view rest = Content(response);
    while (!rest.empty()) {
        betweenBlocks();
        const std::string_view block = rest.substr(0, kBlock);
        RequireWritten(writer.Write(block), target);
        rest.remove_prefix(block.size());
    }
    RequireWritten(writer.Finish(true), target);
}

/// Whether writing there may wait for somebody who reads.
bool IsPipeOrDevice(const std::filesystem::path& target) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(target, ignored);
    return std::filesystem::is_other(status);
}

/// Carries out a write that may wait for whoever reads, so that Ctrl-C and --timeout end it.
void WriteWithPatience(Context& context, const RemoteFile& file, std::function<void()> write) {
    AwaitCall(std::move(write), file.name + ": writing,", Summary(file), context.Timeout());
}

} // namespace

std::uintmax_t Download(Context& context, const RemoteFile& file,
                        const std::filesystem::path& target) {
    Interrupt interrupt;
    if (IsPipeOrDevice(target)) {
        const Received response = Receive(context, file, interrupt);
        WriteWithPatience(context, file, [response, target] {
            LocalFileWriter writer;
            RequireWritten(writer.Open(target), target);
            WriteFile(target, *response, writer, [] {});
        });
        return Content(*response).size();
    }
    // A folder that cannot be written to shows before the transfer.
    LocalFileWriter writer;
    RequireWritten(writer.Open(target), target);
    const Received response = Receive(context, file, interrupt);
    WriteFile(target, *response, writer, [&] {
        if (interrupt.Wait(0ms)) {
            throw Failure(ExitCode::Interrupted, Summary(file) + " Interrupted.");
        }
    });
    return Content(*response).size();
}

std::uintmax_t DownloadToOutput(Context& context, const RemoteFile& file) {
    Interrupt interrupt;
    const Received response = Receive(context, file, interrupt);
    WriteWithPatience(context, file, [response] {
        try {
            Terminal::Write(Terminal::Stream::Output, Content(*response));
        } catch (const std::system_error& error) {
            throw LocalFailure("The output cannot be written", error.code());
        }
    });
    return Content(*response).size();
}

} // namespace brevint::cli

// Our side of the comparisons: what an application does with the library.

#include "bench/Documents.h"
#include "bench/Task.h"
#include "bench/Transfers.h"

#include <brevint/brevint.h>
#include <brevint/client.h>

#include <chrono>
#include <memory>
#include <thread>

namespace {

std::wstring Wide(const std::string& text) {
    return std::wstring(text.begin(), text.end());
}

void Listing(const TaskArguments& arguments, Stopwatch& watch) {
    const std::vector<char> document = ListingDocument(arguments.size);
    for (std::size_t i = 0; i < arguments.count; ++i) {
        watch.Start();
        std::vector<CFolderItem*> items;
        {
            CGetFolderContentsResponse response;
            response.SetServerResponse(document, 200);
            response.GetFolderContents(items);
            for (const CFolderItem* item : items) {
                delete item;
            }
        }
        watch.Stop();
        Require(items.size() == arguments.size, "items are missing");
    }
}

void ClientListing(const TaskArguments& arguments, Stopwatch& watch) {
    std::size_t named = 0;
    watch.Start();
    {
        const brevint::Client client(arguments.url);
        for (const brevint::Item& item : client.List(std::to_string(arguments.size))) {
            named += item.name.empty() ? 0 : 1;
        }
    }
    watch.Stop();
    Require(named == arguments.size, "items are missing");
}

void ErrorReply(const TaskArguments& arguments, Stopwatch& watch) {
    const std::vector<char> document = ErrorDocument();
    watch.Start();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        CUploadFileResponse response;
        response.SetServerResponse(document, 403);
        Require(response.GetErrorCode() == ErrorCode::AuthorizationFailed, "wrong code");
    }
    watch.Stop();
}

void SmallCalls(const TaskArguments& arguments, Stopwatch& watch) {
    const std::wstring url = Wide(arguments.url);
    WebRequestFactory requests;
    CRepositoryProxy repository(&requests);
    watch.Start();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        const std::unique_ptr<CPathResponse> path(repository.GetPath(url, L"1"));
        Require(path && path->GetSucceeded() && *path->GetPath(), "no path");
    }
    watch.Stop();
}

void SignIns(const TaskArguments& arguments, Stopwatch& watch) {
    const std::wstring url = Wide(arguments.url);
    WebRequestFactory requests;
    watch.Start();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        CSignInProxy account(&requests);
        const std::unique_ptr<SignInResponse> session(
            account.SignIn(url.c_str(), L"ada", L"ada-secret"));
        Require(session->GetSucceeded(), "not signed in");
    }
    watch.Stop();
}

/// Starts all downloads, then waits for each.
void Download(const TaskArguments& arguments, Stopwatch& watch, const std::wstring& suffix) {
    const std::wstring url = Wide(arguments.url);
    const std::wstring id = std::to_wstring(arguments.size) + suffix;
    WebRequestFactory requests;
    watch.Start();
    {
        CRepositoryProxy repository(&requests);
        std::vector<std::unique_ptr<IDownloadFileResponse>> files;
        files.reserve(arguments.count);
        for (std::size_t i = 0; i < arguments.count; ++i) {
            files.emplace_back(
                repository.DownloadFile(url, id, Wide(arguments.file) + std::to_wstring(i)));
        }
        for (const auto& file : files) {
            while (!file->IsComplete()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            Require(file->GetSucceeded(), "the download failed");
        }
    }
    watch.Stop();
}

void DownloadWithLength(const TaskArguments& arguments, Stopwatch& watch) {
    Download(arguments, watch, L"");
}

void DownloadInChunks(const TaskArguments& arguments, Stopwatch& watch) {
    Download(arguments, watch, L"-chunked");
}

void Upload(const TaskArguments& arguments, Stopwatch& watch) {
    const std::wstring url = Wide(arguments.url);
    WebRequestFactory requests;
    CRepositoryProxy repository(&requests);
    watch.Start();
    const std::unique_ptr<CUploadFileResponse> job(
        repository.UploadFile(url, L"1", Wide(arguments.file)));
    watch.Stop();
    Require(job && job->GetSucceeded(), "the upload failed");
}

constexpr Task kTasks[] = {
    {"listing", Listing},
    {"client-listing", ClientListing},
    {"error-reply", ErrorReply},
    {"small-calls", SmallCalls},
    {"sign-ins", SignIns},
    {"download", DownloadWithLength},
    {"download-chunked", DownloadInChunks},
    {"upload", Upload},
    {"transfer-down", TransferDown},
    {"transfer-down-chunked", TransferDownInChunks},
    {"transfer-down-durable", TransferDownDurably},
    {"transfer-up", TransferUp},
    {"cancel", CancelSilent},
};

} // namespace

int main(int argc, char** argv) {
    return RunTask(kTasks, argc, argv);
}

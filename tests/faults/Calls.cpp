#include "tests/faults/Calls.h"

#include "brevint/brevint.h"
#include "brevint/c.h"
#include "tests/library/Helpers.h"
#include "tests/proxies/ConnectionFailure.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/ResponseKinds.h"

#include <memory>
#include <string_view>

namespace brevint::test {

namespace {

const std::string kFile = ScriptedServer::Pattern(3000);

/// Code, and the server's words if there are any.
std::string Verdict(const IReadOnlyResponse& response) {
    const auto* all = dynamic_cast<const IResponse*>(&response);
    const auto words = Utf8::ToNarrow(all ? all->GetServerErrorMessage() : L"");
    return std::to_string(static_cast<int>(response.GetErrorCode())) +
           (words.empty() ? "" : " \"" + words + '"');
}

/// Reads a response of that kind and deletes it, as a caller does. One that has failed must read as
/// if nothing had come.
Outcome Judge(const char* kind, IReadOnlyResponse* response, const wchar_t* healthy) {
    const bool succeeded = response->GetSucceeded();
    const std::string verdict = Verdict(*response);
    auto empty = FindKind(kind)->make();
    empty->SetServerResponse({}, 0);
    const std::wstring nothing = Read(kind, empty.release()).second;
    return {succeeded, Read(kind, response).second == (succeeded ? healthy : nothing), verdict};
}

Outcome List(const std::wstring& service, const std::wstring&) {
    WebRequestFactory factory;
    return Judge("GetFolderContents", CRepositoryProxy(&factory).GetFolderContents(service, L"id"),
                 L"|||a||||||||lockedpublic;|||b||||||||lockedpublic;");
}

Outcome Poll(const std::wstring& service, const std::wstring&) {
    WebRequestFactory factory;
    return Judge("PollUploadStatus",
                 CRepositoryProxy(&factory).PollUploadFileStatus(service, L"id"), L"1|item");
}

Outcome Upload(const std::wstring& service, const std::wstring& folder) {
    WebRequestFactory factory;
    return Judge("UploadFile",
                 CRepositoryProxy(&factory).UploadFile(service, L"id", folder + L"/source"),
                 L"job|");
}

/// What has become of a download's destination; `verdict` is its code.
Outcome JudgeFile(bool succeeded, const std::wstring& destination, const std::string& verdict) {
    const bool exists = std::filesystem::exists(FilePath(destination));
    const bool whole = exists && ReadFile(destination) == kFile;
    const char* disk = whole ? ", whole file" : exists ? ", wrong file" : ", no file";
    return {succeeded, succeeded ? whole : !exists, verdict + disk};
}

Outcome Download(const std::wstring& service, const std::wstring& folder) {
    const auto destination = folder + L"/destination";
    std::filesystem::remove(FilePath(destination));
    WebRequestFactory factory;
    CRepositoryProxy proxy(&factory);
    const std::unique_ptr<IDownloadFileResponse> response(
        proxy.DownloadFile(service, L"id", destination));
    if (!AwaitComplete(*response)) {
        return {false, false, "never complete"};
    }
    return JudgeFile(response->GetSucceeded(), destination, Verdict(*response));
}

/// One attempt, so that what comes of it is seen, of a file whose size is known from its listing.
Outcome Transfer(const std::wstring& service, const std::wstring& folder) {
    const auto destination = folder + L"/destination";
    std::filesystem::remove(FilePath(destination));
    brevint_queue_settings settings;
    brevint_queue_settings_init(&settings, sizeof settings);
    settings.attempts = 1;
    brevint_client_settings any;
    brevint_client_settings_init(&any, sizeof any);
    any.insecure_http = 1;
    brevint_client* client = brevint_client_new(Utf8::ToNarrow(service).c_str(), &any, nullptr);
    brevint_queue* queue = brevint_queue_new(client, &settings);
    brevint_client_free(client);
    brevint_download request;
    brevint_download_init(&request, sizeof request);
    const std::string path = Utf8::ToNarrow(destination);
    request.item_id = "id";
    request.destination = path.c_str();
    request.listed_size = kFile.size();
    brevint_transfer* transfer = brevint_queue_download(queue, &request);
    brevint_transfer_wait(transfer, 60'000);
    brevint_outcome outcome;
    brevint_outcome_init(&outcome, sizeof outcome);
    const bool isFinal = brevint_transfer_outcome(transfer, &outcome) != 0;
    const Outcome result =
        JudgeFile(outcome.state == BREVINT_TRANSFER_FINISHED, destination,
                  isFinal ? std::to_string(outcome.code) : std::string("needs sign-in"));
    brevint_transfer_free(transfer);
    brevint_queue_free(queue);
    return result;
}

Outcome SignIn(const std::wstring& service, const std::wstring&) {
    WebRequestFactory factory;
    CSignInProxy proxy(&factory);
    const std::unique_ptr<SignInResponse> response(proxy.SignIn(service.c_str(), L"u", L"p"));
    const bool succeeded = response->GetSucceeded();
    const std::wstring message = response->GetErrorMessage();
    return {succeeded,
            std::wstring_view(response->GetCookie()) ==
                    (succeeded ? L"FedAuth=a; FedAuth1=b" : L"") &&
                message.empty() == succeeded,
            succeeded                               ? "signed in"
            : message == ConnectionFailure(service) ? "cannot connect"
                                                    : Utf8::ToNarrow(message)};
}

const std::string kItems = "<Item><Name>a</Name></Item><Item><Name>b</Name></Item>";
const Call kCalls[] = {
    {"list", List, Document(kItems)},
    {"poll", Poll, Document("<Status>2</Status><Details>item</Details>")},
    {"upload", Upload, Document("<JobId>job</JobId>")},
    {"download", Download, kFile},
    {"transfer", Transfer, kFile},
    {"sign-in: service", SignIn, "", 0},
    {"sign-in: portal", SignIn, "", 1},
    {"sign-in: cookies", SignIn, "", 2},
};

} // namespace

std::span<const Call> Calls() {
    return kCalls;
}

Healthy HealthyReply(const Call& call, int step, const std::string& next, const std::string& path) {
    if (!call.body.empty()) {
        return {.body = call.body};
    }
    const std::string cookie = "Set-Cookie: FedAuth", scope = "; Path=" + path + '\n';
    switch (step) {
    case 0: return {"302 Found", "Location: " + next + "\n", "The portal is elsewhere."};
    case 1:
        return {.body = "<html><body><form action='" + next +
                        "'><input type=hidden name=token value=b></form></body></html>"};
    default: return {"200 OK", cookie + "=a" + scope + cookie + "1=b" + scope, "<html>Welcome"};
    }
}

} // namespace brevint::test

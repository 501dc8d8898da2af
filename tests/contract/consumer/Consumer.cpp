#include <brevint/brevint.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

void Require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::exit(1);
    }
}

std::vector<char> Bytes(const char* text) {
    return std::vector<char>(text, text + std::char_traits<char>::length(text));
}

/// A response of the application's own, which knows more messages and parses anew.
class MyPathResponse : public CPathResponse {
public:
    explicit MyPathResponse(const std::string& message) {
        const ErrorRow rows[] = {{L"quota exceeded.", 1999}, {L"requested item not found.", 1998}};
        AddExactMessages(rows);
        const ErrorRow beginnings[] = {{L"quota of ", 1997}};
        AddMessagePrefixes(beginnings);
        const auto text = "<ResponseData><Message>" + message + "</Message></ResponseData>";
        SetServerResponse(Bytes(text.c_str()), 404);
    }

    void ParseServerResponse() override {
        Require(ParseReply() != nullptr, "a class of the application's own parses");
        CPathResponse::ParseServerResponse();
    }
};

} // namespace

// Objects of every kind that the library hands out are received here and deleted here.
int main() {
    CProxyFactory factory;
    void* object = nullptr;
    Require(factory.Create(IID_IRepositoryProxy, &object) == 1, "the factory makes a proxy");
    const std::unique_ptr<IRepositoryProxy> repository(static_cast<IRepositoryProxy*>(object));

    // Nobody listens at an address that cannot be understood.
    const std::unique_ptr<CPathResponse> path(repository->GetPath(L"nowhere", L"1"));
    Require(path->GetErrorCode() == ErrorCode::EmptyReply, "a failed call says so");
    const std::unique_ptr<IDownloadFileResponse> file(
        repository->DownloadFile(L"nowhere", L"1", L"unused"));
    Require(file->IsComplete() && !file->GetSucceeded(),
            "a download that cannot start is complete");
    Require(dynamic_cast<IResponse*>(file.get()) != nullptr, "interfaces lead to one another");

    WebRequestFactory requests;
    CSignInProxy account(&requests);
    const std::unique_ptr<SignInResponse> session(account.SignIn(L"nowhere", L"ada", L"secret"));
    const std::wstring message = session->GetErrorMessage();
    Require(message.find(L"(nowhere)") != std::wstring::npos, "the library finds its own texts");

    CGetFolderContentsResponse folder;
    folder.SetServerResponse(
        Bytes("<ResponseData><Item><Name>\xC3\x9C</Name></Item></ResponseData>"), 200);
    std::vector<CFolderItem*> items;
    folder.GetFolderContents(items);
    Require(items.size() == 1, "a listing has its items");
    const std::unique_ptr<CFolderItem> item(items.front());
    Require(item->GetName() == L"\u00DC", "names are wide text");

    const std::pair<const char*, double> messages[] = {
        {"Quota exceeded.", 1999},
        {"Quota of 5 GB is used up", 1997},
        {"Requested item not found.", ErrorCode::PathItemNotFound}, // known already
        {"Authorization failed.", ErrorCode::AuthorizationFailed}};
    for (const auto& [text, code] : messages) {
        Require(MyPathResponse(text).GetErrorCode() == code, text);
    }

    const std::unique_ptr<IRequest> request(requests.Create());
    std::vector<char> nothing;
    request->GetRequestedData(nothing);
    Require(nothing.empty() && request->GetRequestStatus() == 0, "an unsent request has no reply");
    return 0;
}

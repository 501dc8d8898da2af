#include "fuzz/Fuzz.h"
#include "tests/library/Details.h"

using namespace brevint::test;

template <class Response>
static void Read(const std::vector<char>& reply, unsigned long status) {
    Response response;
    response.SetServerResponse(reply, status);
    Require(response.GetSucceeded() == (response.GetErrorCode() == ErrorCode::Success));
    Require(Detail(response) == Detail(response));
    response.ParseServerResponse();
}

template <class... Responses>
static void ReadAs(unsigned kind, const std::vector<char>& reply, unsigned long status) {
    unsigned index = 0;
    ((index++ == kind % sizeof...(Responses) ? Read<Responses>(reply, status) : void()), ...);
}

/// The first byte is the kind of response, an upper-case letter for a status that is not 200.
void Fuzz(std::string_view input) {
    const unsigned char first = input.empty() ? 0 : static_cast<unsigned char>(input.front());
    ReadAs<CCheckInOutResponse, CCreateFolderResponse, CDeleteResponse, CDownloadFileResponse,
           CGetFolderContentsResponse, CIdentityResponse, COverwriteFileResponse, CPathResponse,
           CPollOverwriteStatusResponse, CPollUploadStatusResponse, CSignOutResponse,
           CTemplateResponse, CUploadFileResponse, CVersionInfoResponse>(
        first & 0x1Fu, {input.begin() + !input.empty(), input.end()}, (first & 0x20) ? 200 : 500);
}

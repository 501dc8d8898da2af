#include "brevint/LocalDownloadFileResponse.h"

#include "responses/LocalResponseStore.h"

CLocalDownloadFileResponse::CLocalDownloadFileResponse(const std::wstring& destination) {
    SetFileDestination(destination);
    SetServerResponse(LocalResponseStore::Read(kStoredName), 200);
}

CLocalDownloadFileResponse::~CLocalDownloadFileResponse() = default;

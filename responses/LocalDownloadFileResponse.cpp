#include "brevint/LocalDownloadFileResponse.h"

#include "responses/LocalResponseStore.h"

CLocalDownloadFileResponse::CLocalDownloadFileResponse(const std::wstring& destination) {
    SetFileDestination(destination);
    SetServerResponse(LocalResponseStore::Find(kStoredName).value_or(std::vector<char>()), 200);
}

CLocalDownloadFileResponse::~CLocalDownloadFileResponse() = default;

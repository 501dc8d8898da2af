#include "brevint/LocalResponse.h"

#include "responses/LocalResponseStore.h"

CLocalResponse::CLocalResponse(const std::wstring& name) {
    SetServerResponse(LocalResponseStore::Read(name), 200);
}

CLocalResponse::~CLocalResponse() = default;

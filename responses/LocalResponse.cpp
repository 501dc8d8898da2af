#include "brevint/LocalResponse.h"

#include "responses/LocalResponseStore.h"

CLocalResponse::CLocalResponse(const std::wstring& name) {
    SetServerResponse(LocalResponseStore::Find(name).value_or(std::vector<char>()), 200);
}

CLocalResponse::~CLocalResponse() = default;

#include "brevint/WebRequestFactory.h"

#include "brevint/WebRequest.h"

IRequest* WebRequestFactory::Create() {
    return new WebRequest();
}

IRequest* WebRequestFactory::Create(const wchar_t* url, WebRequestType type) {
    return new WebRequest(url, type);
}

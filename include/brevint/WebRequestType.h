#pragma once

/// HTTP verb of a request.
enum WebRequestType : int {
    WebRequestTypeGet = 0,
    WebRequestTypePut = 1,
    WebRequestTypePost = 2,
    WebRequestTypeDelete = 3,
};

#pragma once

/// @file
/// HTTP verbs.

/// HTTP verb of a request.
enum WebRequestType : int {
    WebRequestTypeGet = 0,    ///< GET
    WebRequestTypePut = 1,    ///< PUT
    WebRequestTypePost = 2,   ///< POST
    WebRequestTypeDelete = 3, ///< DELETE
};

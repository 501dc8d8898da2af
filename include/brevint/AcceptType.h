#pragma once

/// @file
/// Media types of replies.

/// Media type that a request accepts. Every value without a row here stands for "text/html".
enum AcceptType : int {
    AcceptTypeDefault = 0,     ///< "text/html"
    AcceptTypeXml = 1,         ///< "text/xml"
    AcceptTypeHtml = 2,        ///< "text/html"
    AcceptTypeOctetStream = 3, ///< "application/octet-stream"
};

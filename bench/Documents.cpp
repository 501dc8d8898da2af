#include "bench/Documents.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

std::string Name(std::size_t number) {
    const std::string digits = std::to_string(number);
    if (number % 20 == 0) {
        return "Überblick — 概要 " + digits + ".xlsx";
    }
    if (number % 3 == 0) {
        return "Cost &amp; time &lt;" + digits + "&gt;.xlsx";
    }
    return "Report of the project " + digits + ".xlsx";
}

std::string Identifier(std::size_t number) {
    char text[37];
    std::snprintf(text, sizeof text, "%08zx-5b1c-4f0e-9d2a-%012zx", number, number * 2654435761U);
    return text;
}

std::vector<char> Bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

} // namespace

std::vector<char> ListingDocument(std::size_t items) {
    std::string text = R"(<?xml version="1.0" encoding="utf-8"?><ResponseData>)";
    for (std::size_t i = 0; i < items; ++i) {
        text += "<Item><UniqueId>" + Identifier(i) + "</UniqueId><ParentId>" + Identifier(i / 100) +
                "</ParentId><OwnerId>" + Identifier(i % 7) + "</OwnerId><Name>" + Name(i) +
                "</Name><Description>Revised</Description>"
                "<DateCreated>2026-03-14T09:26:53Z</DateCreated>"
                "<DateModified>2026-10-02T17:45:00Z</DateModified><Data><Size>" +
                std::to_string(i * 4099) +
                "</Size></Data><Locked>true</Locked><LockedBy>ada</LockedBy>"
                "<IsPublic>false</IsPublic><ItemType>1</ItemType>"
                "<ItemTypeDescription>File</ItemTypeDescription></Item>";
    }
    return Bytes(text + "</ResponseData>");
}

std::vector<char> ErrorDocument() {
    return Bytes("<?xml version=\"1.0\" encoding=\"utf-8\"?><ResponseData>"
                 "<Message>Authorization failed.</Message></ResponseData>");
}

#include "base/Ascii.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/http/HeaderList.h"
#include "support/Utf8.h"
#include "transfers/HttpFields.h"

void Fuzz(std::string_view input) {
    platform::HeaderList headers;
    headers.SetBlock(Utf8::ToWide(input));
    for (const auto& [name, value] : headers) {
        Require(!name.empty() && name.find(':') == std::string::npos &&
                headers.Find(name)->value == value);
        Require(!base::HasControls(name) && platform::IsFieldValue(value));
        if (const auto range = transfers::ParseContentRange(value)) {
            Require(range->first <= range->last);
            Require(range->last == transfers::kUnknownSize || range->last < range->total);
        }
        if (const auto time = transfers::ParseHttpDate(value)) {
            Require(value.size() == std::string_view("Sun, 06 Nov 1994 08:49:37 GMT").size());
        }
    }
}

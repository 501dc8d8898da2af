#include "base/Ascii.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/http/HeaderList.h"
#include "support/Utf8.h"

void Fuzz(std::string_view input) {
    platform::HeaderList headers;
    headers.SetBlock(Utf8::ToWide(input));
    for (const auto& [name, value] : headers) {
        Require(!name.empty() && name.find(':') == std::string::npos &&
                headers.Find(name)->value == value);
        Require(!base::HasControls(name) && platform::IsFieldValue(value));
    }
}

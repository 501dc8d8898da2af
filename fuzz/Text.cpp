#include "service/Text.h"
#include "fuzz/Fuzz.h"
#include "service/FormFields.h"
#include "support/HtmlUnescape.h"
#include "support/HttpEscape.h"
#include "support/IsoTime.h"
#include "support/Utf8.h"
#include "transfers/PartRecord.h"

#include <cstring>

void Fuzz(std::string_view input) {
    using namespace BaseHlpr;
    // Nothing that is well-formed is lost, and what has been repaired is well-formed.
    const std::wstring wide = Utf8::ToWide(input);
    const std::string narrow = Utf8::ToNarrow(wide);
    Require(narrow == input || narrow.find("\xEF\xBF\xBD") != std::string::npos);
    Require(Utf8::ToWide(narrow) == wide);
    std::wstring words(input.size() / sizeof(wchar_t), L'\0');
    std::memcpy(words.data(), input.data(), words.size() * sizeof(wchar_t));
    Require(Utf8::ToWide(Utf8::ToNarrow(words)).size() == words.size());

    const auto escaped = HttpEscape(input.data(), static_cast<unsigned>(input.size()));
    Require(brevint::service::ReadQuery(escaped + "=1").Single(input) == "1" || input.empty());
    const std::wstring text = wide.substr(0, wide.find(L'\0'));
    Require(HtmlUnescape(text.c_str()).size() <= text.size());
    const std::string html = brevint::service::HtmlEscape(Utf8::ToNarrow(text));
    Require(HtmlUnescape(Utf8::ToWide(html).c_str()) == text);

    ParseIsoTime(input);
    if (const auto record = transfers::PartRecord::Parse(input)) {
        const auto again = transfers::PartRecord::Parse(record->Text());
        Require(again && again->Text() == record->Text());
    }
}

#include "explorer/model/ErrorText.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"

namespace brevint::explorer {

std::wstring ErrorText(const Error& error) {
    std::wstring text = DisplayText(Wide(error.text));
    const auto add = [&text](const std::wstring& sentence) {
        text += L' ' + sentence;
    };
    if (!error.serverMessage.empty()) {
        add(Text(IDS_SERVER_SAYS, {DisplayText(Wide(error.serverMessage))}));
    }
    if (!error.hint.empty()) {
        add(Wide(error.hint));
    }
    if (error.mayHaveHappened) {
        add(Text(IDS_MAY_HAVE_HAPPENED));
    }
    return text;
}

std::wstring ErrorDetails(const Error& error) {
    std::wstring details;
    const auto add = [&details](const std::wstring& line) {
        details += (details.empty() ? L"" : L"\r\n") + line;
    };
    if (const char* name = brevint_code_name(error.code)) {
        add(Text(IDS_DETAIL_CODE, {std::to_wstring(error.code), Wide(name)}));
    }
    if (const char* meaning = brevint_code_meaning(error.code)) {
        add(Wide(meaning));
    }
    if (error.httpStatus != 0) {
        add(Text(IDS_DETAIL_STATUS, {std::to_wstring(error.httpStatus)}));
    }
    return details.empty() ? Text(IDS_NO_DETAILS) : details;
}

} // namespace brevint::explorer

#include "support/ResourceString.h"

#include "platform/Resources.h"
#include "resources/Strings.h"
#include "support/Text.h"

#include <vector>

namespace BaseHlpr {

std::wstring GetResourceString(unsigned id, const char* moduleName) {
    // Without a module LoadStringW would take the strings of the program that is running.
    const HMODULE module = moduleName ? GetModuleHandleA(moduleName) : nullptr;
    if (!module) {
        return {};
    }
    std::vector<wchar_t> buffer(512);
    for (;;) {
        const int capacity = static_cast<int>(buffer.size());
        const int length = LoadStringW(module, id, buffer.data(), capacity);
        // LoadStringW cuts a text that does not fit, and does not say so.
        if (length < capacity - 1) {
            return std::wstring(buffer.data(), static_cast<std::size_t>(length > 0 ? length : 0));
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::wstring ConnectionFailureMessage(const std::wstring& url) {
    const std::wstring text =
        GetResourceString(BREVINT_STRING_CONNECTION_FAILURE_ID, BREVINT_MODULE_NAME);
    return StringReplace(text.c_str(), L"%s", url.c_str());
}

} // namespace BaseHlpr

#include "support/ResourceString.h"

#include "platform/Resources.h"
#include "support/Text.h"

#include <vector>

namespace BaseHlpr {
namespace {

constexpr const char* kModuleName = "Brevint.dll";
constexpr unsigned kConnectionFailure = 2;

} // namespace

std::wstring GetResourceString(unsigned id, const char* moduleName) {
    std::vector<wchar_t> buffer(512);
    for (;;) {
        const int capacity = static_cast<int>(buffer.size());
        const int length = LoadStringW(GetModuleHandleA(moduleName), id, buffer.data(), capacity);
        // A text that does not fit is cut to the capacity without a sign of it.
        if (length < capacity - 1) {
            return std::wstring(buffer.data(), static_cast<std::size_t>(length > 0 ? length : 0));
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::wstring ConnectionFailureMessage(const std::wstring& url) {
    const std::wstring text = GetResourceString(kConnectionFailure, kModuleName);
    return StringReplace(text.c_str(), L"%s", url.c_str());
}

} // namespace BaseHlpr

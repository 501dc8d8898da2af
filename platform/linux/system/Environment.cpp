#include "platform/linux/system/Environment.h"

#include "support/Utf8.h"

#include <cstdlib>
#include <new>
#include <string>

wchar_t* _wgetenv(const wchar_t* name) noexcept {
    thread_local std::wstring held;
    try {
        const char* value = std::getenv(Utf8::ToNarrow(name).c_str());
        if (!value) {
            return nullptr;
        }
        held = Utf8::ToWide(value);
        return held.data();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

#include "platform/linux/system/Resources.h"

#include "base/Ascii.h"
#include "platform/linux/system/StringTable.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

struct Module {};

namespace {

Module ownModule;

} // namespace

HMODULE GetModuleHandleA(LPCSTR name) noexcept {
    return name != nullptr && base::EqualsIgnoreCase(name, ModuleName()) ? &ownModule : nullptr;
}

int LoadStringW(HINSTANCE /*module*/, UINT id, LPWSTR buffer, int size) noexcept {
    const auto table = ModuleStringTable();
    const auto row = std::ranges::find(table, id, &StringResource::id);
    if (buffer == nullptr || size < 0 || row == table.end()) {
        SetLastError(row == table.end() ? ERROR_RESOURCE_NAME_NOT_FOUND : ERROR_INVALID_PARAMETER);
        return 0;
    }
    const std::size_t length = std::wcslen(row->text);
    if (size == 0) {
        std::memcpy(buffer, static_cast<const void*>(&row->text), sizeof row->text);
        return static_cast<int>(length);
    }
    const std::size_t copied = std::min(length, static_cast<std::size_t>(size) - 1);
    std::copy_n(row->text, copied, buffer);
    buffer[copied] = L'\0';
    return static_cast<int>(copied);
}

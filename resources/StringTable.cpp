#include "platform/linux/system/StringTable.h"

#include "resources/Strings.h"

const char* ModuleName() noexcept {
    return BREVINT_MODULE_NAME;
}

std::span<const StringResource> ModuleStringTable() noexcept {
    static constexpr StringResource kTable[] = {
        {BREVINT_STRING_CONNECTION_FAILURE_ID, L"" BREVINT_STRING_CONNECTION_FAILURE},
    };
    return kTable;
}

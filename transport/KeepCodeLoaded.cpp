#include "transport/KeepCodeLoaded.h"

#include "platform/Resources.h"

void KeepCodeLoaded() {
    HMODULE module = nullptr;
    [[maybe_unused]] static const BOOL kept =
        GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                           reinterpret_cast<LPCWSTR>(&KeepCodeLoaded), &module);
}

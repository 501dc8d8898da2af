#include "tests/support/Environment.h"

#include <cstdint>
#include <cstdlib>
#include <windows.h>

namespace brevint::test {

void SetVariable(const std::string& name, const std::string& value) {
    _putenv_s(name.c_str(), value.c_str());
}

// The C runtime takes a variable out when it is set to nothing.
void ClearVariable(const std::string& name) {
    _putenv_s(name.c_str(), "");
}

void* LoadModule(const char* name) {
    return LoadLibraryA(name);
}

void* FindSymbol(void* module, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void UnloadModule(void* module) {
    FreeLibrary(static_cast<HMODULE>(module));
}

std::size_t CountHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    if (count != 0) {
        return count;
    }
    // Wine 8 does not count. It numbers handles by fours, and gives out the lowest that is free.
    const HANDLE next = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(next);
    return reinterpret_cast<std::uintptr_t>(next) / 4;
}

} // namespace brevint::test

#include "tests/support/Module.h"

#include <windows.h>

namespace brevint::test {

void* LoadModule(const char* name) {
    return LoadLibraryA(name);
}

void* FindSymbol(void* module, const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void UnloadModule(void* module) {
    FreeLibrary(static_cast<HMODULE>(module));
}

// A thread that runs, or has been waited for by nobody yet, has a handle too.
std::size_t ThreadsAndHandles() {
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    return handles;
}

} // namespace brevint::test

#pragma once

#include <memory>

#include <windows.h>

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};

/// Owner of an open file, process or token. Null, and not INVALID_HANDLE_VALUE, stands for none.
using HandlePtr = std::unique_ptr<HANDLE, HandleCloser>;

struct LocalFreer {
    using pointer = void*;
    void operator()(void* memory) const noexcept { LocalFree(memory); }
};

/// Owner of memory that Windows gives out for LocalFree.
using LocalPtr = std::unique_ptr<void, LocalFreer>;

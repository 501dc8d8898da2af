#pragma once

// BREVINT_API marks a class whose members live in the library; BREVINT_INTERFACE marks an abstract
// class that callers and the library share. Everything else is hidden.

#if defined(_WIN32)
#define BREVINT_INTERFACE
#if defined(BREVINT_BUILDING)
#define BREVINT_API __declspec(dllexport)
#else
#define BREVINT_API __declspec(dllimport)
#endif
#else
#define BREVINT_INTERFACE __attribute__((visibility("default")))
#define BREVINT_API __attribute__((visibility("default")))
#endif

#pragma once

#include <cstdint>

// The 16-byte identifier of an interface, with the name, the layout and the guard that Windows'
// own headers use, so that either definition serves.
#ifndef GUID_DEFINED
#define GUID_DEFINED
typedef struct _GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
} GUID;
#endif

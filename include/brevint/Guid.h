#pragma once

#include <cstdint>

// The 16-byte identifier of an interface, with the name, the layout and the guard that Windows'
// own headers use, so that either definition serves.
#ifndef GUID_DEFINED
#define GUID_DEFINED
/// The identifier of an interface (brevint/InterfaceIds.h).
typedef struct _GUID {
    ///@{
    /// A part, in the order in which an identifier is printed.
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
    ///@}
} GUID;
#endif

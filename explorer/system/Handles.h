#pragma once

#include "support/windows/Handles.h"

#include <memory>
#include <type_traits>

#include <commctrl.h>
#include <objbase.h>
#include <windows.h>

namespace brevint::explorer {

/// Closes what Windows has given out with the function that is meant for it.
template <auto Close>
struct Closer {
    template <class Object>
    void operator()(Object* object) const noexcept {
        Close(object);
    }
};

template <class Handle, auto Close>
using Owner = std::unique_ptr<std::remove_pointer_t<Handle>, Closer<Close>>;

using FontPtr = Owner<HFONT, DeleteObject>;
using MenuPtr = Owner<HMENU, DestroyMenu>;
template <class Object>
using TaskMemoryPtr = std::unique_ptr<Object, Closer<CoTaskMemFree>>;

struct Releaser {
    void operator()(IUnknown* object) const noexcept { object->Release(); }
};

/// Owner of a COM object.
template <class Interface>
using ComPtr = std::unique_ptr<Interface, Releaser>;

} // namespace brevint::explorer

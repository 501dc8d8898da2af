#pragma once

#include "brevint/Export.h"

/// Something that finishes later, on another thread.
class BREVINT_INTERFACE ICheckComplete {
public:
    virtual ~ICheckComplete() = default;

    /// True once everything else may be read. May be called from any thread, at any time.
    virtual bool IsComplete() const = 0;
};

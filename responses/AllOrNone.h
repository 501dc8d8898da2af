#pragma once

#include <cstddef>
#include <new>
#include <vector>

/// Has `append` add records to a list of the caller's. Where memory ends the list is as it was
/// before, and the answer is false.
template <class Record, class Append>
bool AppendAllOrNone(std::vector<Record*>& records, Append append) noexcept {
    const std::size_t before = records.size();
    try {
        append();
        return true;
    } catch (const std::bad_alloc&) {
        for (; records.size() > before; records.pop_back()) {
            delete records.back();
        }
        return false;
    }
}

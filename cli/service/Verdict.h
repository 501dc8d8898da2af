#pragma once

#include "brevint/IReadOnlyResponse.h"

#include <memory>
#include <new>
#include <string>
#include <vector>

namespace brevint::cli {

/// Throws a Failure that begins with `summary` ("The folder cannot be listed.") unless the call
/// succeeded. Null stands for a call that there was no memory for.
void RequireSuccess(const IReadOnlyResponse* response, const std::string& summary);

/// The records that `take` appends, of a call that has succeeded. The library makes them only now.
/// When there is no memory for them it appends none and says so by its code, which throws here: an
/// empty listing would be wrong.
template <class Response, class Record>
std::vector<Record> TakeRecords(Response& response, void (Response::*take)(std::vector<Record*>&)) {
    std::vector<Record*> made;
    (response.*take)(made);
    const std::vector<std::unique_ptr<Record>> owners(made.begin(), made.end());
    if (!response.GetSucceeded()) {
        throw std::bad_alloc();
    }
    std::vector<Record> records;
    records.reserve(owners.size());
    for (const auto& record : owners) {
        records.push_back(*record);
    }
    return records;
}

/// HTTP status of the reply; 0 when there was none.
unsigned long StatusOf(const IReadOnlyResponse& response);

} // namespace brevint::cli

#pragma once

#include "service/HttpServer.h"
#include "service/Misbehaviour.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brevint::service {

struct ServiceOptions {
    HttpServerOptions http = {};
    bool chunkedDownloads = false; ///< All downloads, not only those that ask for it.
    unsigned unfinishedPolls = 2;  ///< How often a job is polled before it ends.
    std::size_t manyFiles = 0;     ///< When not 0: a folder "Many" with so many small files.
    std::vector<std::pair<std::string, std::uint64_t>> patternFiles = {}; ///< Name and size.
    Misbehaviour misbehaviour = {}; ///< What the service starts with.
};

} // namespace brevint::service

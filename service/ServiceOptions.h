#pragma once

#include "service/HttpServer.h"
#include "service/User.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace brevint::service {

/// An administrator, a plain user, and a user whose name and password need every kind of escaping.
/// The passwords are no secret: the service is for loopback only.
std::vector<User> DefaultUsers();

struct ServiceOptions {
    HttpServerOptions http;
    std::string basePath;                     ///< "" or like "/dashboard".
    std::vector<User> users = DefaultUsers(); ///< The first one owns the initial content.
    bool chunkedDownloads = false;            ///< All downloads, not only those that ask for it.
    unsigned unfinishedPolls = 2;             ///< How often a job is polled before it ends.
    std::chrono::seconds tokenLifetime = std::chrono::minutes(5);
    std::chrono::seconds sessionLifetime = std::chrono::hours(8);
    std::size_t manyFiles = 0; ///< When not 0: a folder "Many" with so many small files.
    std::vector<std::pair<std::string, std::uint64_t>> patternFiles; ///< Name and size.
};

} // namespace brevint::service

#pragma once

#include "service/Repository.h"
#include "service/ServiceOptions.h"

namespace brevint::service {

/// Fills a new repository with the tree that docs/service.md shows, and with what the options ask
/// for beyond it.
void SeedRepository(Repository& repository, const ServiceOptions& options);

} // namespace brevint::service

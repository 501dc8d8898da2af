#pragma once

#include "service/Jobs.h"
#include "service/Repository.h"
#include "service/ServiceOptions.h"
#include "service/Sessions.h"

namespace brevint::service {

/// What the resources of one service work on.
struct ServiceState {
    /// `settings` name one user at least.
    explicit ServiceState(ServiceOptions settings);

    const ServiceOptions options;
    Sessions sessions;
    Repository repository;
    Jobs jobs;
};

} // namespace brevint::service

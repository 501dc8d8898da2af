#pragma once

#include "service/Jobs.h"
#include "service/Repository.h"
#include "service/ServiceOptions.h"
#include "service/Sessions.h"

namespace brevint::service {

/// What the resources of one service work on.
struct ServiceState {
    explicit ServiceState(ServiceOptions settings);

    const ServiceOptions options;
    Sessions sessions;
    Repository repository;
    Jobs jobs;
    Conduct conduct;
};

} // namespace brevint::service

#include "service/ServiceState.h"

#include "service/Seed.h"

#include <utility>

namespace brevint::service {

ServiceState::ServiceState(ServiceOptions settings)
    : options(std::move(settings)), repository(kUsers.front()), jobs(options.unfinishedPolls) {
    conduct.Set(options.misbehaviour);
    SeedRepository(repository, options);
}

} // namespace brevint::service

#include "service/ServiceState.h"

#include "service/Seed.h"

#include <utility>

namespace brevint::service {

ServiceState::ServiceState(ServiceOptions settings)
    : options(std::move(settings)),
      sessions(options.users, options.tokenLifetime, options.sessionLifetime),
      repository(options.users.front()), jobs(options.unfinishedPolls) {
    SeedRepository(repository, options);
}

} // namespace brevint::service

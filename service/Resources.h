#pragma once

#include "service/Router.h"
#include "service/ServiceState.h"

namespace brevint::service {

// Each adds one family of resources and stands in a source of its own. The state must outlive the
// router that is given.
void AddSignInResources(Router& router, ServiceState& state);
void AddAccountResources(Router& router);
void AddTemplateResources(Router& router, ServiceState& state);
void AddFolderResources(Router& router, ServiceState& state);
void AddItemResources(Router& router, ServiceState& state);
void AddFileResources(Router& router, ServiceState& state);
void AddJobResources(Router& router, ServiceState& state);

} // namespace brevint::service

#include "service/ReferenceService.h"

#include "service/Resources.h"

#include <utility>

namespace brevint::service {

ReferenceService::ReferenceService(ServiceOptions options)
    : state_(std::move(options)), router_(state_.options.basePath, state_.sessions),
      server_(state_.options.http, [this](const HttpRequest& head) { return Admit(head); }) {
    AddSignInResources(router_, state_);
    AddAccountResources(router_);
    AddTemplateResources(router_, state_);
    AddFolderResources(router_, state_);
    AddItemResources(router_, state_);
    AddFileResources(router_, state_);
    AddJobResources(router_, state_);
}

void ReferenceService::Start() {
    server_.Start();
}

void ReferenceService::Stop() {
    server_.Stop();
}

std::string ReferenceService::Url() const {
    return "http://" + state_.options.http.address + ":" + std::to_string(server_.Port()) +
           state_.options.basePath + "/";
}

} // namespace brevint::service

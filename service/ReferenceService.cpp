#include "service/ReferenceService.h"

#include "service/Resources.h"

#include <utility>

namespace brevint::service {

ReferenceService::ReferenceService(ServiceOptions options)
    : m_state(std::move(options)), m_router(m_state.sessions),
      m_server(m_state.options.http, [this](const HttpRequest& head) { return Admit(head); }) {
    AddSignInResources(m_router, m_state);
    AddAccountResources(m_router);
    AddTemplateResources(m_router, m_state);
    AddFolderResources(m_router, m_state);
    AddItemResources(m_router, m_state);
    AddFileResources(m_router, m_state);
    AddJobResources(m_router, m_state);
}

void ReferenceService::Start() {
    m_server.Start();
}

void ReferenceService::Stop() {
    m_server.Stop();
}

std::string ReferenceService::Url() const {
    return "http://127.0.0.1:" + std::to_string(m_server.Port()) + "/";
}

} // namespace brevint::service

// How far a job is.

#include "service/Resources.h"
#include "service/XmlWriter.h"

namespace brevint::service {

namespace {

HttpReply PollJob(const Call& call, Jobs& jobs) {
    const std::string id = call.Guid();
    const JobReport report = jobs.Poll(id, *call.user);
    XmlWriter xml;
    xml.Open("ResponseData")
        .Element("JobId", id)
        .Element("Status", std::to_string(static_cast<int>(report.state)))
        .Element("Details", report.details)
        .Close();
    return XmlReply(xml.Document());
}

} // namespace

void AddJobResources(Router& router, ServiceState& state) {
    router.Add(
        {"GET", "Repository/Jobs/{id}", Access::SignedIn, "", "`JobId`, `Status`, `Details`"},
        [&state](const Call& call) { return PollJob(call, state.jobs); });
}

} // namespace brevint::service

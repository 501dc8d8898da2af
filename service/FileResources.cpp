// The content of files: downloads, and uploads, which become jobs.

#include "base/Hex.h"
#include "service/FormFields.h"
#include "service/MultipartFile.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/XmlWriter.h"

#include <utility>

namespace brevint::service {

namespace {

HttpReply Download(const Call& call, const ServiceState& state) {
    const Item item = state.repository.Find(call.Guid());
    if (item.IsFolder())
        throw NotAFile();
    HttpReply reply;
    reply.headers = {
        {"Content-Type", "application/octet-stream"},
        {"Content-Disposition", "attachment; filename*=UTF-8''" + base::PercentEncode(item.name)}};
    reply.file = item.content;
    reply.chunked =
        state.options.chunkedDownloads || ReadQuery(call.request.query).Single("chunked") == "1";
    return reply;
}

HttpReply TellJob(const std::string& jobId) {
    XmlWriter xml;
    xml.Open("ResponseData").Element("JobId", jobId).Close();
    return XmlReply(xml.Document());
}

// The sent file: its name, and its content, which takes the request's body over.
std::pair<std::string, std::shared_ptr<const Blob>> TakeFile(HttpRequest& request) {
    MultipartFile file = ReadMultipartFile(request.Header("Content-Type"), request.body);
    return {std::move(file.name), MakeBlob(std::move(request.body), file.offset, file.size)};
}

HttpReply Upload(Call& call, ServiceState& state) {
    const std::string parentId = call.Guid();
    const auto [name, content] = TakeFile(call.request);
    state.repository.CheckNewFile(parentId, name, *call.user);
    return TellJob(state.jobs.Add(
        *call.user, [&repository = state.repository, parentId, name, content, &user = *call.user] {
            return repository.AddFile(parentId, name, content, user);
        }));
}

HttpReply Overwrite(Call& call, ServiceState& state) {
    const std::string fileId = call.Guid();
    const auto [name, content] = TakeFile(call.request);
    state.repository.CheckReplacement(fileId, *call.user);
    return TellJob(state.jobs.Add(
        *call.user, [&repository = state.repository, fileId, name, content, &user = *call.user] {
            return repository.ReplaceFile(fileId, name, content, user);
        }));
}

} // namespace

void AddFileResources(Router& router, ServiceState& state) {
    router.Add("GET", "Repository/Files/{id}", Access::SignedIn,
               [&state](const Call& call) { return Download(call, state); });
    router.Add("PUT", "Repository/Files/{id}", Access::SignedIn,
               [&state](Call& call) { return Overwrite(call, state); });
    router.Add("POST", "Repository/Items/{id}/Files", Access::SignedIn,
               [&state](Call& call) { return Upload(call, state); });
}

} // namespace brevint::service

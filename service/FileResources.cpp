// The content of files: downloads, and uploads, which become jobs.

#include "base/Hex.h"
#include "service/FormFields.h"
#include "service/MultipartReader.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/SessionCookies.h"
#include "service/Text.h"
#include "service/XmlWriter.h"

#include <utility>

namespace brevint::service {

namespace {

// A file that is being sent here, as it comes.
class Upload {
public:
    explicit Upload(const HttpRequest& head)
        : m_reader(head.Header("Content-Type"),
                   [this](std::string_view piece) { m_file->Append(piece); }) {}
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;

    void Take(std::string_view piece) { m_reader.Take(piece); }

    // The file's name and content.
    std::pair<std::string, std::shared_ptr<const Blob>> End() {
        MultipartFile part = m_reader.End();
        return {std::move(part.name), MakeBlob(m_file, part.size)};
    }

private:
    const std::shared_ptr<TemporaryFile> m_file = std::make_shared<TemporaryFile>();
    MultipartReader m_reader;
};

// What goes wrong with this call, if anything is to.
Admission Misbehave(const Call& call, ServiceState& state) {
    const Misbehaviour misbehaviour = state.conduct.Next();
    Admission admission{.misbehaviour = misbehaviour};
    if (misbehaviour.retryAfter) {
        admission.refusal = ErrorReply(503, "The service is busy.");
        admission.refusal->headers.emplace_back("Retry-After",
                                                std::to_string(*misbehaviour.retryAfter));
    }
    if (misbehaviour.endsSession) {
        state.sessions.End(ReadSessionCookies(call.request));
    }
    if (misbehaviour.changesFile && call.request.method == "GET") {
        state.repository.Renew(call.Guid());
    }
    return admission;
}

HttpReply Download(const Call& call, const ServiceState& state) {
    const Item item = state.repository.Find(call.Guid());
    if (item.IsFolder()) {
        throw NotAFile();
    }
    const std::string tag = "\"" + item.version + "\"";
    const std::string date = FormatHttpDate(item.modified);
    const std::string size = std::to_string(item.content->Size());
    const std::string condition = call.request.Header("If-Range");
    HttpReply reply;
    if (condition.empty() || condition == tag || condition == date) {
        reply.range = ReadRange(call.request.Header("Range"), item.content->Size());
    }
    if (reply.range && reply.range->length == 0) {
        HttpReply refusal = ErrorReply(416, "The range begins after the end of the file.");
        refusal.headers.emplace_back("Content-Range", "bytes */" + size);
        return refusal;
    }
    reply.headers = {
        {"Content-Type", "application/octet-stream"},
        {"Content-Disposition", "attachment; filename*=UTF-8''" + base::PercentEncode(item.name)},
        {"Accept-Ranges", "bytes"},
        {"ETag", tag},
        {"Last-Modified", date}};
    if (reply.range) {
        const auto [offset, length] = *reply.range;
        reply.status = 206;
        reply.headers.emplace_back("Content-Range", "bytes " + std::to_string(offset) + "-" +
                                                        std::to_string(offset + length - 1) + "/" +
                                                        size);
    }
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

HttpReply AddFile(const Call& call, Upload& upload, ServiceState& state) {
    const std::string parentId = call.Guid();
    const auto [name, content] = upload.End();
    state.repository.CheckNewFile(parentId, name, *call.user);
    return TellJob(state.jobs.Add(
        *call.user, [&repository = state.repository, parentId, name, content, &user = *call.user] {
            return repository.AddFile(parentId, name, content, user);
        }));
}

HttpReply ReplaceFile(const Call& call, Upload& upload, ServiceState& state) {
    const std::string fileId = call.Guid();
    const auto [name, content] = upload.End();
    state.repository.CheckReplacement(fileId, *call.user);
    return TellJob(state.jobs.Add(
        *call.user, [&repository = state.repository, fileId, name, content, &user = *call.user] {
            return repository.ReplaceFile(fileId, name, content, user);
        }));
}

Admission OpenDownload(const Call& opened, ServiceState& state) {
    Admission admission = Misbehave(opened, state);
    admission.answer = [call = opened, &state](const HttpRequest&) {
        return Download(call, state);
    };
    return admission;
}

Admission OpenUpload(const Call& opened, ServiceState& state,
                     HttpReply (*finish)(const Call&, Upload&, ServiceState&)) {
    Admission admission = Misbehave(opened, state);
    const auto upload = std::make_shared<Upload>(opened.request);
    admission.receive = [upload](std::string_view piece) {
        upload->Take(piece);
    };
    admission.answer = [call = opened, upload, &state, finish](const HttpRequest&) {
        return finish(call, *upload, state);
    };
    return admission;
}

} // namespace

void AddFileResources(Router& router, ServiceState& state) {
    router.AddOpened({"GET", "Repository/Files/{id}", Access::SignedIn, "",
                      "the file itself; in chunks with `?chunked=1`"},
                     [&state](const Call& call) { return OpenDownload(call, state); });
    router.AddOpened({"PUT", "Repository/Files/{id}", Access::SignedIn,
                      "one file as multipart/form-data", "`JobId`; replaces a file's content"},
                     [&state](const Call& call) { return OpenUpload(call, state, ReplaceFile); });
    router.AddOpened({"POST", "Repository/Items/{id}/Files", Access::SignedIn,
                      "one file as multipart/form-data", "`JobId`; uploads into a folder"},
                     [&state](const Call& call) { return OpenUpload(call, state, AddFile); });
}

} // namespace brevint::service

// The service that both sides of a comparison talk to. It answers at once and with fixed bodies, so
// that little of what is measured is its own work: a file is called by its number of bytes, a
// folder by its number of items.

#include "bench/Documents.h"
#include "service/Blob.h"
#include "service/HttpServer.h"
#include "service/StopSignal.h"

#include <cstring>
#include <exception>
#include <iostream>
#include <map>
#include <mutex>
#include <vector>

namespace {

using namespace brevint::service;

/// The same block over and over.
class RepeatedBlob final : public Blob {
public:
    explicit RepeatedBlob(std::uint64_t size) : m_size(size) {}

    std::uint64_t Size() const override { return m_size; }

    void Read(std::uint64_t, char* target, std::size_t count) const override {
        std::memset(target, 'b', count);
    }

private:
    std::uint64_t m_size;
};

HttpReply FileReply(const std::string& id) {
    HttpReply reply;
    reply.headers.emplace_back("Content-Type", "application/octet-stream");
    reply.file = std::make_shared<RepeatedBlob>(std::stoull(id));
    reply.chunked = id.ends_with("-chunked");
    return reply;
}

/// Listings are made once.
HttpReply ListingReply(const std::string& count) {
    static std::mutex mutex;
    static std::map<std::string, std::shared_ptr<const Blob>> listings;
    const std::scoped_lock lock(mutex);
    std::shared_ptr<const Blob>& listing = listings[count];
    if (!listing) {
        const std::vector<char> document = ListingDocument(std::stoull(count));
        listing = MakeBlob({document.begin(), document.end()});
    }
    HttpReply reply;
    reply.headers.emplace_back("Content-Type", "text/xml");
    reply.file = listing;
    return reply;
}

HttpReply SignedInReply() {
    HttpReply reply = HtmlReply(200, "<html><body>Dashboard</body></html>");
    reply.headers.emplace_back("Set-Cookie", "FedAuth=77u/PD94bWwg; path=/");
    reply.headers.emplace_back("Set-Cookie", "FedAuth1=dmVyc2lvbj0iMS4w; path=/");
    return reply;
}

HttpReply Answer(const HttpRequest& request) {
    const std::string url = "http://" + request.Header("Host") + "/";
    const std::string name = request.path.substr(request.path.rfind('/') + 1);
    if (name == "Path") {
        return XmlReply("<ResponseData><Path>/Projects/Bridge/Notes.txt</Path></ResponseData>");
    }
    constexpr std::string_view kItems = "/Repository/Items/";
    if (name == "Items") {
        return ListingReply(
            request.path.substr(kItems.size(), request.path.rfind('/') - kItems.size()));
    }
    if (name == "Files") {
        return XmlReply("<ResponseData><JobId>1</JobId></ResponseData>");
    }
    if (request.path.find("/Jobs/") != std::string::npos) {
        return XmlReply("<ResponseData><Status>2</Status><Details>1</Details></ResponseData>");
    }
    if (name.empty()) {
        return RedirectReply(url + "portal?request=sign-in&mode=DB");
    }
    if (name == "portal") {
        return HtmlReply(200, R"(<!DOCTYPE html><html><body><form method="post" action=")" + url +
                                  "federation\"><input type=\"hidden\" name=\"request\" "
                                  "value=\"sign-in\"><input type=\"hidden\" name=\"token\" "
                                  "value=\"token\"></form></body></html>");
    }
    if (name == "federation") {
        return SignedInReply();
    }
    return FileReply(name);
}

/// A file called "…-silent" stops in its midst, with the connection open.
Misbehaviour HowToBehave(const HttpRequest& head) {
    constexpr std::uint64_t kSilentAfter = 1024 * 1024;
    if (!head.path.ends_with("-silent")) {
        return {};
    }
    return {.breakOff = Misbehaviour::Break::Silence, .breakAfter = kSilentAfter};
}

} // namespace

int main() {
    try {
        StopSignal stop;
        HttpServer server({}, [](const HttpRequest& head) {
            return Admission{.receive = [](std::string_view) {},
                             .answer = Answer,
                             .trusted = true,
                             .misbehaviour = HowToBehave(head)};
        });
        server.Start();
        std::cout << "Listening on http://127.0.0.1:" << server.Port() << "/\n" << std::flush;
        stop.Wait();
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}

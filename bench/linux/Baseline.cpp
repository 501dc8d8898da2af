// The other side: the same work by the shortest path with libcurl and libxml2.

#include "bench/BaselineParse.h"
#include "bench/Task.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

namespace {

struct EasyCleanup {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct MultiCleanup {
    void operator()(CURLM* multi) const { curl_multi_cleanup(multi); }
};
struct MimeCleanup {
    void operator()(curl_mime* form) const { curl_mime_free(form); }
};
struct ListCleanup {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
struct FileCleanup {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using Easy = std::unique_ptr<CURL, EasyCleanup>;
using Multi = std::unique_ptr<CURLM, MultiCleanup>;
using Mime = std::unique_ptr<curl_mime, MimeCleanup>;
using List = std::unique_ptr<curl_slist, ListCleanup>;
using File = std::unique_ptr<std::FILE, FileCleanup>;

constexpr long kBufferSize = 256 * 1024; // the same as the library asks for

File OpenFile(const std::string& name, const char* mode) {
    File file(std::fopen(name.c_str(), mode));
    Require(file != nullptr, "a file cannot be opened");
    return file;
}

std::size_t Ignore(char*, std::size_t, std::size_t size, void*) {
    return size;
}

std::size_t WriteBlock(char* data, std::size_t, std::size_t size, void* file) {
    return std::fwrite(data, 1, size, static_cast<std::FILE*>(file));
}

std::size_t Append(char* data, std::size_t, std::size_t size, void* text) {
    static_cast<std::string*>(text)->append(data, size);
    return size;
}

Easy NewEasy() {
    Easy easy(curl_easy_init());
    Require(easy != nullptr, "no handle");
    curl_easy_setopt(easy.get(), CURLOPT_USERAGENT, "Velmora");
    curl_easy_setopt(easy.get(), CURLOPT_BUFFERSIZE, kBufferSize);
    curl_easy_setopt(easy.get(), CURLOPT_UPLOAD_BUFFERSIZE, kBufferSize);
    curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, Ignore);
    return easy;
}

void Perform(CURL* easy, long expectedStatus) {
    Require(curl_easy_perform(easy) == CURLE_OK, "the exchange failed");
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    Require(status == expectedStatus, "unexpected status");
}

void Get(CURL* easy, const std::string& url, long expectedStatus) {
    curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    Perform(easy, expectedStatus);
}

void Post(CURL* easy, const std::string& url, const char* body, std::size_t size) {
    curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
    curl_easy_setopt(easy, CURLOPT_POSTFIELDS, body);
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    Perform(easy, 200);
}

void SmallCalls(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const List headers(curl_slist_append(nullptr, "Accept: text/xml"));
    const Easy easy = NewEasy();
    curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
    for (std::size_t i = 0; i < arguments.count; ++i) {
        Get(easy.get(), arguments.url + "Repository/Items/1/Path", 200);
    }
    watch.Stop();
}

void ClientListing(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    {
        std::string reply;
        const Easy easy = NewEasy();
        curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, Append);
        curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &reply);
        Get(easy.get(),
            arguments.url + "Repository/Items/" + std::to_string(arguments.size) + "/Items", 200);
        Parse(reply.data(), reply.size());
    }
    watch.Stop();
}

void SignIns(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const Easy easy = NewEasy();
    curl_easy_setopt(easy.get(), CURLOPT_COOKIEFILE, "");
    const std::string credentials = "userName=ada&password=ada-secret";
    const std::string form = "request=sign-in&token=token&";
    for (std::size_t i = 0; i < arguments.count; ++i) {
        Get(easy.get(), arguments.url, 302);
        char* portal = nullptr;
        curl_easy_getinfo(easy.get(), CURLINFO_REDIRECT_URL, &portal);
        Post(easy.get(), std::string(portal), credentials.data(), credentials.size());
        Post(easy.get(), arguments.url + "federation", form.data(), form.size());
    }
    watch.Stop();
}

/// One of the downloads under way.
struct Slot {
    Easy easy = NewEasy();
    File file;
};

/// Through one multi handle; each handle of a download serves many, one after another.
void Download(const TaskArguments& arguments, Stopwatch& watch, const std::string& suffix) {
    const std::string url =
        arguments.url + "Repository/Files/" + std::to_string(arguments.size) + suffix;
    watch.Start();
    const Multi multi(curl_multi_init());
    std::vector<Slot> slots(std::min(arguments.count, arguments.atOnce));
    std::size_t begun = 0;
    const auto begin = [&](Slot& slot) {
        slot.file = OpenFile(arguments.file + std::to_string(begun++), "w+b");
        CURL* easy = slot.easy.get();
        curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
        curl_easy_setopt(easy, CURLOPT_PRIVATE, &slot);
        curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, WriteBlock);
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, slot.file.get());
        curl_multi_add_handle(multi.get(), easy);
    };
    for (Slot& slot : slots) {
        begin(slot);
    }
    for (std::size_t done = 0; done < arguments.count;) {
        int count = 0;
        curl_multi_perform(multi.get(), &count);
        while (const CURLMsg* message = curl_multi_info_read(multi.get(), &count)) {
            Require(message->data.result == CURLE_OK, "the exchange failed");
            Slot* slot = nullptr;
            curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &slot);
            curl_multi_remove_handle(multi.get(), slot->easy.get());
            Require(std::ftell(slot->file.get()) == static_cast<long>(arguments.size),
                    "the download failed");
            slot->file.reset();
            ++done;
            if (begun < arguments.count) {
                begin(*slot);
            }
        }
        if (done < arguments.count) {
            curl_multi_poll(multi.get(), nullptr, 0, 1000, nullptr);
        }
    }
    watch.Stop();
}

void DownloadWithLength(const TaskArguments& arguments, Stopwatch& watch) {
    Download(arguments, watch, "");
}

void DownloadInChunks(const TaskArguments& arguments, Stopwatch& watch) {
    Download(arguments, watch, "-chunked");
}

/// A reply that is collected in memory.
struct Collected {
    CURL* easy;
    std::vector<char> body;
};

std::size_t Collect(char* data, std::size_t, std::size_t size, void* collected) {
    auto& [easy, body] = *static_cast<Collected*>(collected);
    if (body.empty()) {
        curl_off_t length = 0; // -1 where the server does not name it
        curl_easy_getinfo(easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        body.reserve(static_cast<std::size_t>(std::max<curl_off_t>(length, 0)));
    }
    body.insert(body.end(), data, data + size);
    return size;
}

/// Collects the file, copies it once, and writes the copy.
void HoldDownload(const TaskArguments& arguments, Stopwatch& watch, const std::string& suffix) {
    const std::string url =
        arguments.url + "Repository/Files/" + std::to_string(arguments.size) + suffix;
    watch.Start();
    {
        const Easy easy = NewEasy();
        Collected collected{easy.get(), {}};
        curl_easy_setopt(easy.get(), CURLOPT_WRITEFUNCTION, Collect);
        curl_easy_setopt(easy.get(), CURLOPT_WRITEDATA, &collected);
        Get(easy.get(), url, 200);
        const std::vector<char> copy = collected.body;
        const File file = OpenFile(arguments.file + '0', "w+b");
        Require(copy.size() == arguments.size &&
                    std::fwrite(copy.data(), 1, copy.size(), file.get()) == copy.size(),
                "the download failed");
    }
    watch.Stop();
}

void HoldDownloadWithLength(const TaskArguments& arguments, Stopwatch& watch) {
    HoldDownload(arguments, watch, "");
}

void HoldDownloadInChunks(const TaskArguments& arguments, Stopwatch& watch) {
    HoldDownload(arguments, watch, "-chunked");
}

/// Reads the file into memory, copies it into a form, and sends that.
void HoldUpload(const TaskArguments& arguments, Stopwatch& watch) {
    constexpr std::string_view kPrefix =
        "--frame\r\nContent-Disposition: form-data; name=\"file\"; filename=\"upload\"\r\n\r\n";
    constexpr std::string_view kSuffix = "\r\n--frame--\r\n";
    watch.Start();
    {
        const auto content = std::make_unique_for_overwrite<char[]>(arguments.size);
        const File file = OpenFile(arguments.file, "rb");
        Require(std::fread(content.get(), 1, arguments.size, file.get()) == arguments.size,
                "the file cannot be read");
        std::vector<char> form;
        form.reserve(kPrefix.size() + arguments.size + kSuffix.size());
        form.insert(form.end(), kPrefix.begin(), kPrefix.end());
        form.insert(form.end(), content.get(), content.get() + arguments.size);
        form.insert(form.end(), kSuffix.begin(), kSuffix.end());
        const Easy easy = NewEasy();
        List headers(
            curl_slist_append(nullptr, "Content-Type: multipart/form-data; boundary=frame"));
        curl_slist_append(headers.get(), "Expect:");
        curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
        Post(easy.get(), arguments.url + "Repository/Items/1/Files", form.data(), form.size());
    }
    watch.Stop();
}

void Upload(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const Easy easy = NewEasy();
    const Mime form(curl_mime_init(easy.get()));
    curl_mimepart* file = curl_mime_addpart(form.get());
    curl_mime_name(file, "file");
    Require(curl_mime_filedata(file, arguments.file.c_str()) == CURLE_OK, "no file");
    const List headers(curl_slist_append(nullptr, "Expect:"));
    curl_easy_setopt(easy.get(), CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(easy.get(), CURLOPT_MIMEPOST, form.get());
    const std::string url = arguments.url + "Repository/Items/1/Files";
    curl_easy_setopt(easy.get(), CURLOPT_URL, url.c_str());
    Perform(easy.get(), 200);
    watch.Stop();
}

constexpr Task kTasks[] = {
    {"listing", ParseListing},
    {"client-listing", ClientListing},
    {"error-reply", ParseErrorReply},
    {"small-calls", SmallCalls},
    {"sign-ins", SignIns},
    {"download", DownloadWithLength},
    {"download-chunked", DownloadInChunks},
    {"upload", Upload},
    {"hold-download", HoldDownloadWithLength},
    {"hold-download-chunked", HoldDownloadInChunks},
    {"hold-upload", HoldUpload},
};

} // namespace

int main(int argc, char** argv) {
    return RunTask(kTasks, argc, argv);
}

// The other side on Windows: the same exchange by the same calls of WinINet, made by hand.

#include "bench/Task.h"

#include <windows.h>

#include <wininet.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

struct FileCleanup {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCleanup>;

constexpr DWORD kBlockSize = 256 * 1024; // as the library's transfers

File OpenFile(const std::string& name, const char* mode) {
    File file(std::fopen(name.c_str(), mode));
    Require(file != nullptr, "a file cannot be opened");
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    return file;
}

/// A request and what it needs, from its opening to its end.
class Request {
public:
    Request(const wchar_t* verb, const std::string& address)
        : m_session(InternetOpenW(L"Velmora", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0)) {
        const std::wstring url(address.begin(), address.end());
        std::vector<wchar_t> host(256);
        std::vector<wchar_t> path(2084);
        URL_COMPONENTSW parts{};
        parts.dwStructSize = sizeof parts;
        parts.lpszHostName = host.data();
        parts.dwHostNameLength = static_cast<DWORD>(host.size());
        parts.lpszUrlPath = path.data();
        parts.dwUrlPathLength = static_cast<DWORD>(path.size());
        Require(InternetCrackUrlW(url.c_str(), 0, 0, &parts), "bad address");
        m_connection = InternetConnectW(m_session, host.data(), parts.nPort, nullptr, nullptr,
                                        INTERNET_SERVICE_HTTP, 0, 0);
        const wchar_t* acceptTypes[] = {L"text/xml", nullptr};
        m_request = HttpOpenRequestW(m_connection, verb, path.data(), nullptr, nullptr, acceptTypes,
                                     INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE, 0);
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    ~Request() {
        InternetCloseHandle(m_request);
        InternetCloseHandle(m_connection);
        InternetCloseHandle(m_session);
    }

    HINTERNET Handle() const { return m_request; }

    DWORD Number(DWORD header) const {
        DWORD number = 0;
        DWORD size = sizeof number;
        HttpQueryInfoW(m_request, header | HTTP_QUERY_FLAG_NUMBER, &number, &size, nullptr);
        return number;
    }

private:
    HINTERNET m_session;
    HINTERNET m_connection;
    HINTERNET m_request;
};

void Get(const std::string& url) {
    const Request request(L"GET", url);
    Require(HttpSendRequestW(request.Handle(), nullptr, 0, nullptr, 0), "the exchange failed");
    const DWORD length = request.Number(HTTP_QUERY_CONTENT_LENGTH);
    std::vector<char> body(length);
    DWORD read = 0;
    Require(request.Number(HTTP_QUERY_STATUS_CODE) == 200 &&
                InternetReadFile(request.Handle(), body.data(), length, &read) && read == length,
            "unexpected reply");
}

void Download(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const Request request(L"GET",
                          arguments.url + "Repository/Files/" + std::to_string(arguments.size));
    Require(HttpSendRequestW(request.Handle(), nullptr, 0, nullptr, 0), "the exchange failed");
    File file = OpenFile(arguments.file + '0', "wb");
    std::vector<char> block(kBlockSize);
    std::size_t rest = arguments.size;
    for (DWORD count = 1; count > 0; rest -= count) {
        Require(InternetReadFile(request.Handle(), block.data(), kBlockSize, &count) &&
                    std::fwrite(block.data(), 1, count, file.get()) == count,
                "the download failed");
    }
    file.reset();
    watch.Stop();
    Require(rest == 0, "the file is not whole");
}

void Upload(const TaskArguments& arguments, Stopwatch& watch) {
    watch.Start();
    const std::string head = "--frame\r\nContent-Disposition: form-data; name=\"file\"; "
                             "filename=\"upload\"\r\n\r\n";
    const std::string end = "\r\n--frame--\r\n";
    const Request request(L"POST", arguments.url + "Repository/Items/1/Files");
    const std::wstring type = L"Content-Type: multipart/form-data; boundary=frame\r\n";
    INTERNET_BUFFERSW buffers{};
    buffers.dwStructSize = sizeof buffers;
    buffers.lpcszHeader = type.c_str();
    buffers.dwHeadersLength = static_cast<DWORD>(type.size());
    buffers.dwBufferTotal = static_cast<DWORD>(head.size() + arguments.size + end.size());
    Require(HttpSendRequestExW(request.Handle(), &buffers, nullptr, 0, 0), "the exchange failed");
    const auto write = [&](const char* data, std::size_t size) {
        DWORD written = 0;
        Require(InternetWriteFile(request.Handle(), data, static_cast<DWORD>(size), &written) &&
                    written == size,
                "the upload failed");
    };
    write(head.data(), head.size());
    const File file = OpenFile(arguments.file, "rb");
    std::vector<char> block(kBlockSize);
    for (std::size_t rest = arguments.size; rest > 0;) {
        const std::size_t count = std::min(block.size(), rest);
        Require(std::fread(block.data(), 1, count, file.get()) == count, "the file cannot be read");
        write(block.data(), count);
        rest -= count;
    }
    write(end.data(), end.size());
    Require(HttpEndRequestW(request.Handle(), nullptr, 0, 0) &&
                request.Number(HTTP_QUERY_STATUS_CODE) == 200,
            "the upload failed");
    watch.Stop();
}

void SmallCalls(const TaskArguments& arguments, Stopwatch& watch) {
    const std::string url = arguments.url + "Repository/Items/1/Path";
    watch.Start();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        Get(url);
    }
    watch.Stop();
}

constexpr Task kTasks[] = {{"small-calls", SmallCalls}, {"download", Download}, {"upload", Upload}};

} // namespace

int main(int argc, char** argv) {
    return RunTask(kTasks, argc, argv);
}

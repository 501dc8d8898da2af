// The other side on Windows: the same exchange by the same calls of WinINet, made by hand.

#include "bench/Task.h"

#include <windows.h>

#include <wininet.h>

#include <vector>

namespace {

void Get(const std::wstring& url) {
    const HINTERNET session =
        InternetOpenW(L"Velmora", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0);
    std::vector<wchar_t> host(256);
    std::vector<wchar_t> path(2084);
    URL_COMPONENTSW parts{};
    parts.dwStructSize = sizeof parts;
    parts.lpszHostName = host.data();
    parts.dwHostNameLength = static_cast<DWORD>(host.size());
    parts.lpszUrlPath = path.data();
    parts.dwUrlPathLength = static_cast<DWORD>(path.size());
    Require(InternetCrackUrlW(url.c_str(), 0, 0, &parts), "bad address");
    const HINTERNET connection = InternetConnectW(session, host.data(), parts.nPort, nullptr,
                                                  nullptr, INTERNET_SERVICE_HTTP, 0, 0);
    const wchar_t* acceptTypes[] = {L"text/xml", nullptr};
    const HINTERNET request =
        HttpOpenRequestW(connection, L"GET", path.data(), nullptr, nullptr, acceptTypes, 0, 0);
    Require(HttpSendRequestW(request, nullptr, 0, nullptr, 0), "the exchange failed");
    DWORD status = 0;
    DWORD length = 0;
    DWORD size = sizeof status;
    HttpQueryInfoW(request, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size,
                   nullptr);
    HttpQueryInfoW(request, HTTP_QUERY_CONTENT_LENGTH | HTTP_QUERY_FLAG_NUMBER, &length, &size,
                   nullptr);
    std::vector<char> body(length);
    DWORD read = 0;
    Require(status == 200 && InternetReadFile(request, body.data(), length, &read) &&
                read == length,
            "unexpected reply");
    InternetCloseHandle(request);
    InternetCloseHandle(connection);
    InternetCloseHandle(session);
}

void SmallCalls(const TaskArguments& arguments, Stopwatch& watch) {
    const std::string url = arguments.url + "Repository/Items/1/Path";
    watch.Start();
    for (std::size_t i = 0; i < arguments.count; ++i) {
        Get(std::wstring(url.begin(), url.end()));
    }
    watch.Stop();
}

constexpr Task kTasks[] = {{"small-calls", SmallCalls}};

} // namespace

int main(int argc, char** argv) {
    return RunTask(kTasks, argc, argv);
}

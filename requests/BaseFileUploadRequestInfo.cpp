#include "requests/BaseFileUploadRequestInfo.h"

#include "support/Files.h"
#include "support/Text.h"
#include "support/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

namespace {

constexpr const wchar_t* kBoundary = L"---------------------8cdfaf76df000f9";
constexpr const wchar_t* kBoundaryPlaceholder = L"%%BOUNDARY%%";
constexpr const wchar_t* kFileNamePlaceholder = L"%%FILENAME%%";
constexpr const wchar_t* kHeaderTemplate =
    L"Content-Type: multipart/form-data; boundary=%%BOUNDARY%%\r\n";
constexpr const wchar_t* kPartHeaderTemplate =
    L"--%%BOUNDARY%%\r\n"
    L"Content-Disposition: form-data; name=\"file\"; filename=\"%%FILENAME%%\"\r\n"
    L"Content-Type: application/octet-stream\r\n\r\n";
constexpr const wchar_t* kTrailerTemplate = L"\r\n--%%BOUNDARY%%--\r\n";

/// The platform counts the bytes of a body in 32 bits.
constexpr std::uint64_t kLargestBody = std::numeric_limits<std::uint32_t>::max();

std::wstring FillBoundary(const wchar_t* text) {
    return BaseHlpr::StringReplace(text, kBoundaryPlaceholder, kBoundary);
}

/// Throws std::bad_alloc when the body cannot be held.
std::vector<char> BuildBody(const std::wstring& filePath) {
    std::uint64_t size = 0;
    const FilePtr file = BaseHlpr::OpenRegularFile(filePath, size);
    if (!file) {
        return {};
    }

    const std::wstring fileName = BaseHlpr::ExtractFileName(filePath);
    const std::string header = Utf8::ToNarrow(BaseHlpr::StringReplace(
        FillBoundary(kPartHeaderTemplate).c_str(), kFileNamePlaceholder, fileName.c_str()));
    const std::string trailer = Utf8::ToNarrow(FillBoundary(kTrailerTemplate));
    if (size > kLargestBody - header.size() - trailer.size()) {
        return {};
    }

    std::vector<char> body(header.size() + static_cast<std::size_t>(size) + trailer.size());
    char* const content = std::ranges::copy(header, body.data()).out;
    // A file that has become shorter leaves the rest of its slot zero.
    static_cast<void>(std::fread(content, 1, static_cast<std::size_t>(size), file.get()));
    std::ranges::copy(trailer, content + size);
    return body;
}

} // namespace

CBaseFileUploadRequestInfo::CBaseFileUploadRequestInfo(const Method& method,
                                                       const std::wstring& baseUrl,
                                                       const std::wstring& path,
                                                       const std::wstring& filePath)
    : CServiceRequestInfo(method, baseUrl, path) {
    try {
        m_uploadData = BuildBody(filePath);
    } catch (const std::bad_alloc&) {
        m_uploadData.clear();
    }
}

std::wstring CBaseFileUploadRequestInfo::GetHeaders() const {
    return FillBoundary(kHeaderTemplate);
}

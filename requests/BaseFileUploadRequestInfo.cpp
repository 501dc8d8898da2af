#include "requests/BaseFileUploadRequestInfo.h"

#include "requests/MultipartFrame.h"
#include "support/Files.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

namespace {

/// The platform counts the bytes of a body in 32 bits.
constexpr std::uint64_t kLargestBody = std::numeric_limits<std::uint32_t>::max();

/// Throws std::bad_alloc when the body cannot be held.
std::vector<char> BuildBody(const std::wstring& filePath) {
    std::uint64_t size = 0;
    const FilePtr file = BaseHlpr::OpenRegularFile(filePath, size);
    if (!file) {
        return {};
    }

    const auto [header, trailer] = MakeMultipartFrame(filePath);
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
                                                       const std::wstring& filePath,
                                                       UploadBody body)
    : CServiceRequestInfo(method, baseUrl, path) {
    if (body == UploadBody::Streamed) {
        return;
    }
    try {
        m_uploadData = BuildBody(filePath);
    } catch (const std::bad_alloc&) {
        m_uploadData.clear();
    }
}

std::wstring CBaseFileUploadRequestInfo::GetHeaders() const {
    return MultipartHeader();
}

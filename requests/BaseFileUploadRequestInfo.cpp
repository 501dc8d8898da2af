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

/// What is read of a file at a time.
constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

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

    const std::size_t end = header.size() + static_cast<std::size_t>(size);
    std::vector<char> body;
    body.reserve(end + trailer.size());
    body.assign(header.begin(), header.end());
    // By way of a block that stays in the processor's cache: a vector clears what it is to hold
    // before a file can be read into it, which takes longer.
    std::vector<char> block(std::min<std::uint64_t>(kBlockSize, size));
    for (std::size_t count = 1; count > 0;) {
        count = std::fread(block.data(), 1, std::min(block.size(), end - body.size()), file.get());
        body.insert(body.end(), block.data(), block.data() + count);
    }
    // A file that has become shorter leaves the rest of its slot zero.
    body.resize(end);
    body.insert(body.end(), trailer.begin(), trailer.end());
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

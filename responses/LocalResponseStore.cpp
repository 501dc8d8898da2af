#include "responses/LocalResponseStore.h"

#include "platform/Environment.h"
#include "support/Files.h"

#include <new>

namespace LocalResponseStore {
namespace {

FilePtr Open(const std::wstring& name, std::uint64_t& size) {
    const wchar_t* folder = _wgetenv(L"BREVINT_LOCAL_RESPONSES");
    if (!folder || *folder == L'\0') {
        return nullptr;
    }
    return BaseHlpr::OpenRegularFile(std::wstring(folder) + L"/" + name, size);
}

} // namespace

bool Holds(const std::wstring& name) {
    std::uint64_t size = 0;
    return Open(name, size) != nullptr;
}

std::vector<char> Read(const std::wstring& name) noexcept {
    try {
        std::uint64_t size = 0;
        if (const FilePtr file = Open(name, size)) {
            std::vector<char> bytes(static_cast<std::size_t>(size));
            if (std::fread(bytes.data(), 1, bytes.size(), file.get()) == bytes.size()) {
                return bytes;
            }
        }
    } catch (const std::bad_alloc&) {
        return {}; // as good as none
    }
    return {};
}

} // namespace LocalResponseStore

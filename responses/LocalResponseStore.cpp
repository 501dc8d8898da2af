#include "responses/LocalResponseStore.h"

#include "platform/Environment.h"
#include "support/Files.h"

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

std::optional<std::vector<char>> Find(const std::wstring& name) {
    std::uint64_t size = 0;
    const FilePtr file = Open(name, size);
    if (!file) {
        return std::nullopt;
    }
    std::vector<char> bytes(static_cast<std::size_t>(size));
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

} // namespace LocalResponseStore

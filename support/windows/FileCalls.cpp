#include "support/windows/FileCalls.h"

#include <algorithm>

HandlePtr OpenFile(const std::filesystem::path& path, DWORD access, DWORD share, DWORD disposition,
                   DWORD flags, PSECURITY_DESCRIPTOR descriptor) {
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    const HANDLE handle =
        CreateFileW(path.c_str(), access, share, &attributes, disposition, flags, nullptr);
    return HandlePtr(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

std::error_code WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), size, &written, nullptr)) {
            return FileError();
        }
        bytes.remove_prefix(written);
    }
    return {};
}

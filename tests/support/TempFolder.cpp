#include "tests/support/TempFolder.h"

#include <random>
#include <system_error>

namespace brevint::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    std::random_device random;
    do {
        m_folder = fs::temp_directory_path() / ("brevint-test-" + std::to_string(random()));
    } while (!fs::create_directory(m_folder));
}

TempFolder::~TempFolder() {
    // Windows removes no file that is read-only.
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(m_folder, ignored)) {
        fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, ignored);
    }
    fs::remove_all(m_folder, ignored);
}

std::wstring TempFolder::Path(const std::wstring& name) const {
    return m_folder.wstring() + L'/' + name;
}

} // namespace brevint::test

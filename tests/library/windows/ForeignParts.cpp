#include "tests/library/ForeignParts.h"

#include <windows.h>

#include <sddl.h>

namespace brevint::test {

std::vector<ForeignPart> ForeignParts() {
    return {{"everybody's", [](const std::filesystem::path& part) {
                 PSECURITY_DESCRIPTOR open = nullptr;
                 ConvertStringSecurityDescriptorToSecurityDescriptorW(
                     L"D:P(A;;FA;;;WD)", SDDL_REVISION_1, &open, nullptr);
                 SetFileSecurityW(part.c_str(), DACL_SECURITY_INFORMATION, open);
                 LocalFree(open);
             }}};
}

} // namespace brevint::test

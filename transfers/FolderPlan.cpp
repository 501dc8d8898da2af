#include "transfers/FolderPlan.h"

namespace transfers {

void FolderPlan::JudgeExisting(FolderEntry& file, std::uint64_t bytesThere,
                               std::optional<std::int64_t> modifiedThere) const {
    switch (m_request.existing) {
    case Existing::Refuse:
        file.Refuse(calls::FailureKind::Exists, L"There is a file of that name already.");
        break;
    case Existing::Replace: break;
    case Existing::Update:
        if (file.bytes == bytesThere && file.modified && modifiedThere >= file.modified) {
            file.Skip();
        }
    }
}

} // namespace transfers

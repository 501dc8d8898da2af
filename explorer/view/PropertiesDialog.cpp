#include "explorer/view/PropertiesDialog.h"

#include "explorer/resources/Resource.h"
#include "explorer/system/Formats.h"
#include "explorer/system/Text.h"

#include <utility>

namespace brevint::explorer {

PropertiesDialog::PropertiesDialog(Item item, std::string path)
    : Dialog(IDD_PROPERTIES), m_item(std::move(item)), m_path(std::move(path)) {}

void PropertiesDialog::OnOpen() {
    UINT id = IDC_FIRST_PROPERTY;
    for (const std::wstring& value :
         {Wide(m_item.name), Wide(m_path), Wide(m_item.type), SizeText(m_item.size),
          TimeText(m_item.createdTime), TimeText(m_item.modifiedTime),
          Wide(m_item.isLocked ? m_item.lockedBy : std::string()),
          Text(m_item.isPublic ? IDS_YES : IDS_NO), Wide(m_item.id), Wide(m_item.description)}) {
        SetWindowTextW(Control(id++), DisplayText(value).c_str());
    }
    SetFocus(Control(IDCANCEL));
}

void PropertiesDialog::OnCommand(UINT id, UINT) {
    if (id == IDCANCEL) {
        Close();
    }
}

} // namespace brevint::explorer

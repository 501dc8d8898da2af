#pragma once

#include "brevint/client.h"
#include "explorer/view/Dialog.h"

#include <string>

namespace brevint::explorer {

/// Shows what is known of an item, as texts that can be copied.
class PropertiesDialog : public Dialog {
public:
    PropertiesDialog(Item item, std::string path);

private:
    void OnOpen() override;
    void OnCommand(UINT id, UINT notification) override;

    const Item m_item;
    const std::string m_path;
};

} // namespace brevint::explorer

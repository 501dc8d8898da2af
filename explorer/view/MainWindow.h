#pragma once

#include "explorer/background/Dispatcher.h"
#include "explorer/background/Session.h"
#include "explorer/background/Worker.h"
#include "explorer/model/TransfersModel.h"
#include "explorer/system/Desktop.h"
#include "explorer/system/SessionStore.h"
#include "explorer/system/Settings.h"
#include "explorer/system/Window.h"
#include "explorer/view/Account.h"
#include "explorer/view/DialogStack.h"
#include "explorer/view/FolderView.h"
#include "explorer/view/ItemCommands.h"
#include "explorer/view/TransfersPane.h"

#include <functional>
#include <memory>
#include <optional>

#include <shellapi.h>

namespace brevint::explorer {

/// The program's window: lays its parts out, and brings what the user does to the part that it
/// concerns.
class MainWindow : public Window {
public:
    /// What the window uses of its surroundings. The references live longer than it.
    struct Surroundings {
        const Dispatcher& dispatcher;
        Desktop& desktop;
        Settings settings = Settings();
        std::optional<SessionStore> store = {};
        std::function<void()> onClosed = {};
    };

    explicit MainWindow(Surroundings surroundings);
    ~MainWindow() override;

    /// Shows it, and goes on with the stored session or asks the user to sign in.
    void Start(int showCommand);

    /// What a message means for the keyboard. Returns whether that was all.
    bool Translate(MSG& message);

private:
    /// When a command makes sense, and what it does.
    struct CommandRow {
        UINT id;
        bool (*isEnabled)(const MainWindow&);
        void (*run)(MainWindow&);
    };
    static const CommandRow* FindCommand(UINT id);

    LRESULT OnMessage(UINT message, WPARAM wide, LPARAM longer) override;
    LRESULT OnNotify(const NMHDR& header);
    void OnCommand(UINT id, UINT notification);
    void OnEnter();
    void OnEscape();
    void OnDrop(HDROP drop);
    void OnContextMenu(HWND where, POINT point);
    void OnSplit(POINT point);
    bool OnSetCursor() const;
    void OnClose();
    void OnDpi(int dpi, const RECT* place);

    void CreateParts();
    void CreateToolbar();
    void Arrange();
    RECT MiddlePlace() const;
    void ApplyFont();
    void RestorePlacement();
    void SavePlacement();
    void FocusNextPane();

    void OnSignedIn();
    void OnSignedOut();
    void OnLocation();
    void OnTransfersChanged(std::optional<std::size_t> index);
    void SignOut();
    void AskIfTransfersRun(UINT question, UINT yesLabel, std::function<void()> yes);

    /// Soon, and once for many changes.
    void UpdateLater();
    void Update();
    void UpdateStatus();
    bool IsEnabled(UINT command) const;

    const Surroundings m_surroundings;
    Settings m_settings;
    const HACCEL m_keys;
    const HACCEL m_itemKeys;
    FontPtr m_font;
    int m_dpi = USER_DEFAULT_SCREEN_DPI;
    int m_treeWidth = 220;      ///< On a screen of 96 dots per inch.
    int m_paneHeight = 150;     ///< Likewise.
    bool m_isMaximized = false; ///< It was when it was closed last.
    bool m_updateIsDue = false;
    bool m_waits = false;             ///< For replies or transfers; the timer runs then.
    bool m_usedAlt = false;           ///< It is held down, and a key of ours was pressed with it.
    bool m_askedForTransfers = false; ///< To sign in.
    enum class Split { None, Tree, Pane } m_split = Split::None;

    HWND m_lastFocus = nullptr; ///< Where it was when another window became active.
    HWND m_toolbar = nullptr;
    HWND m_addressLabel = nullptr;
    HWND m_address = nullptr;
    HWND m_searchLabel = nullptr;
    HWND m_search = nullptr;
    HWND m_status = nullptr;

    // Each of these uses those above it.
    Worker m_worker;
    Session m_session;
    DialogStack m_dialogs;
    TransfersModel m_transfers;
    Account m_account;
    std::unique_ptr<FolderView> m_view;
    std::unique_ptr<TransfersPane> m_pane;
    std::unique_ptr<ItemCommands> m_commands;
};

} // namespace brevint::explorer

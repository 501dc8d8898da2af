#include "explorer/view/MainWindow.h"

#include "explorer/model/ErrorText.h"
#include "explorer/resources/Resource.h"
#include "explorer/system/Text.h"
#include "explorer/view/Controls.h"

#include <algorithm>
#include <iterator>

namespace brevint::explorer {

const MainWindow::CommandRow* MainWindow::FindCommand(UINT id) {
    using Self = const MainWindow&;
    static constexpr auto kAlways = [](Self) {
        return true;
    };
    static constexpr auto kIsListed = [](Self w) {
        return w.m_view->IsListed();
    };
    static constexpr auto kHasSelected = [](Self w) {
        return w.m_view->List().GetSelection().count > 0;
    };
    static constexpr auto kHasOne = [](Self w) {
        return w.m_view->List().GetSelection().count == 1;
    };
    static constexpr CommandRow kRows[] = {
        {IDM_SIGN_IN, [](Self w) { return !w.m_account.IsSignedIn(); },
         [](MainWindow& w) {
             w.m_account.AskToSignIn();
         }},
        {IDM_SIGN_OUT, [](Self w) { return w.m_account.IsSignedIn(); },
         [](MainWindow& w) {
             w.SignOut();
         }},
        {IDM_EXIT, kAlways,
         [](MainWindow& w) {
             w.OnClose();
         }},
        {IDM_OPEN, kHasOne,
         [](MainWindow& w) {
             w.m_commands->Open();
         }},
        {IDM_DOWNLOAD, kHasSelected,
         [](MainWindow& w) {
             w.m_commands->Download();
         }},
        {IDM_REPLACE,
         [](Self w) {
             const Selection selection = w.m_view->List().GetSelection();
             return selection.count == 1 && selection.files == 1;
         },
         [](MainWindow& w) {
             w.m_commands->Replace();
         }},
        {IDM_CHECK_OUT,
         [](Self w) {
             const Selection selection = w.m_view->List().GetSelection();
             return selection.count > 0 && selection.files == selection.count &&
                    selection.lockedFiles == 0;
         },
         [](MainWindow& w) {
             w.m_commands->CheckOut();
         }},
        {IDM_CHECK_IN,
         [](Self w) {
             const Selection selection = w.m_view->List().GetSelection();
             return selection.count > 0 && selection.lockedFiles == selection.count;
         },
         [](MainWindow& w) {
             w.m_commands->CheckIn();
         }},
        {IDM_DELETE, kHasSelected,
         [](MainWindow& w) {
             w.m_commands->Delete();
         }},
        {IDM_COPY_PATH, kHasSelected,
         [](MainWindow& w) {
             w.m_commands->CopyPaths();
         }},
        {IDM_PROPERTIES, kHasOne,
         [](MainWindow& w) {
             w.m_commands->ShowProperties();
         }},
        {IDM_NEW_FOLDER, kIsListed,
         [](MainWindow& w) {
             w.m_commands->CreateFolder();
         }},
        {IDM_UPLOAD, kIsListed,
         [](MainWindow& w) {
             w.m_commands->ChooseUpload();
         }},
        {IDM_UPLOAD_FOLDER, kIsListed,
         [](MainWindow& w) {
             w.m_commands->ChooseFolderUpload();
         }},
        {IDM_REFRESH, [](Self w) { return !w.m_view->Current().empty(); },
         [](MainWindow& w) {
             w.m_view->Refresh();
         }},
        {IDM_UP, [](Self w) { return w.m_view->Current().size() > 1; },
         [](MainWindow& w) {
             w.m_view->GoUp();
         }},
        {IDM_SEARCH, kAlways,
         [](MainWindow& w) {
             SetFocus(w.m_search);
         }},
        {IDM_ADDRESS, kAlways,
         [](MainWindow& w) {
             SetFocus(w.m_address);
             Send(w.m_address, EM_SETSEL, 0, -1);
         }},
        {IDM_STOP, [](Self w) { return w.m_session.IsBusy(); },
         [](MainWindow& w) {
             w.m_session.StopAll();
         }},
        {IDM_SELECT_ALL, kIsListed,
         [](MainWindow& w) {
             w.m_view->List().SelectAll();
         }},
        {IDM_CANCEL, [](Self w) { return w.m_pane->CanCancel(); },
         [](MainWindow& w) {
             w.m_pane->CancelSelected();
         }},
        {IDM_RETRY, [](Self w) { return w.m_pane->CanRetry(); },
         [](MainWindow& w) {
             if (w.m_session.IsOpen()) {
                 w.m_pane->RetrySelected(w.m_session.GetClient());
             } else {
                 w.m_account.AskToSignIn();
             }
         }},
        {IDM_TRANSFER_DETAILS, [](Self w) { return w.m_pane->SelectedFailure() != nullptr; },
         [](MainWindow& w) {
             const TransfersModel::Row& row = *w.m_pane->SelectedFailure();
             w.m_dialogs.ShowMessage({.icon = IDI_WARNING,
                                      .title = Text(IDS_TITLE),
                                      .text = StateText(row),
                                      .details = FailureDetails(row),
                                      .choices = {{Text(IDS_OK)}}});
         }},
        {IDM_CLEAR, [](Self w) { return w.m_pane->CanClear(); },
         [](MainWindow& w) {
             w.m_pane->ClearEnded();
         }},
        {IDM_NEXT_PANE, kAlways,
         [](MainWindow& w) {
             w.FocusNextPane();
         }},
    };
    const auto* const row = std::ranges::find(kRows, id, &CommandRow::id);
    return row == std::end(kRows) ? nullptr : row;
}

bool MainWindow::IsEnabled(UINT command) const {
    return FindCommand(command)->isEnabled(*this);
}

} // namespace brevint::explorer

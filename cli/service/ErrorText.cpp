#include "cli/service/ErrorText.h"

#include "brevint/ErrorCodes.h"

#include <algorithm>
#include <array>

namespace brevint::cli {

namespace {

constexpr char kConnect[] = "Check the address and the network connection.";
constexpr char kSignIn[] = "Sign in with brevint sign-in, or ask for the right to do this.";
constexpr char kAddress[] = "Check that the address is the service's own, and sign in again.";
constexpr char kIdentifier[] =
    "Check the identifier; brevint ls -l shows those of a folder's items.";
constexpr char kFind[] = "Look for the item with brevint ls; it may have been moved or deleted.";
constexpr char kCheckIn[] =
    "Whoever has checked it out can check it in; brevint ls shows who that is.";
constexpr char kAskHolder[] = "Ask the user who has checked it out; brevint ls shows who that is.";
constexpr char kDisk[] = "Check the free space and the permissions of the folder.";
constexpr char kFolder[] = "Name a folder instead.";
constexpr char kContent[] = "Send a file of a type and content that the service accepts.";
constexpr char kLocal[] = "Check that the local file is there and can be read.";
constexpr char kReplace[] =
    "Use brevint replace for a new version of that file, or choose another name.";
constexpr char kOdd[] = "Tell the service's administrator: its answer is incomplete.";

constexpr std::array<ErrorText, 39> kErrorTexts = {{
    {ErrorCode::MessageNotRecognised, "MessageNotRecognised", ExitCode::Refused, ""},
    {ErrorCode::EmptyReply, "EmptyReply", ExitCode::NoConnection, kConnect},
    {ErrorCode::AuthorizationFailed, "AuthorizationFailed", ExitCode::NotAuthorised, kSignIn},
    {ErrorCode::ReplyNotXml, "ReplyNotXml", ExitCode::Refused, kAddress},
    {ErrorCode::CheckInOutInvalidId, "CheckInOutInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::CheckInOutOfFolder, "CheckInOutOfFolder", ExitCode::Refused,
     "Only files can be checked out and in."},
    {ErrorCode::CheckInOutItemNotFound, "CheckInOutItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::CheckInOutAlreadyCheckedOut, "CheckInOutAlreadyCheckedOut", ExitCode::Refused,
     kCheckIn},
    {ErrorCode::CheckInOutByAnotherUser, "CheckInOutByAnotherUser", ExitCode::Refused, kAskHolder},
    {ErrorCode::DownloadItemNotFound, "DownloadItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::DownloadInvalidId, "DownloadInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::DownloadWriteFailed, "DownloadWriteFailed", ExitCode::LocalFile, kDisk},
    {ErrorCode::FolderContentsItemNotFound, "FolderContentsItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::FolderContentsInvalidId, "FolderContentsInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::FolderContentsNotAFolder, "FolderContentsNotAFolder", ExitCode::Refused, kFolder},
    {ErrorCode::OverwriteInvalidId, "OverwriteInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::OverwriteItemNotFound, "OverwriteItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::OverwriteNotAFile, "OverwriteNotAFile", ExitCode::Refused,
     "Name a file; brevint put adds one to a folder."},
    {ErrorCode::OverwriteCheckedOutByAnotherUser, "OverwriteCheckedOutByAnotherUser",
     ExitCode::Refused, kAskHolder},
    {ErrorCode::OverwriteFileRejected, "OverwriteFileRejected", ExitCode::Refused, kContent},
    {ErrorCode::OverwriteNoFile, "OverwriteNoFile", ExitCode::LocalFile, kLocal},
    {ErrorCode::UploadNameExists, "UploadNameExists", ExitCode::Refused, kReplace},
    {ErrorCode::UploadInvalidId, "UploadInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::UploadItemNotFound, "UploadItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::UploadNotAFolder, "UploadNotAFolder", ExitCode::Refused, kFolder},
    {ErrorCode::UploadFileRejected, "UploadFileRejected", ExitCode::Refused, kContent},
    {ErrorCode::UploadProjectToTemplates, "UploadProjectToTemplates", ExitCode::Refused,
     "Choose a folder among the projects."},
    {ErrorCode::UploadTemplateToProjects, "UploadTemplateToProjects", ExitCode::Refused,
     "Choose a folder among the templates."},
    {ErrorCode::JobIdMissing, "JobIdMissing", ExitCode::Refused, kOdd},
    {ErrorCode::UploadNoFile, "UploadNoFile", ExitCode::LocalFile, kLocal},
    {ErrorCode::IdentityPartyMissing, "IdentityPartyMissing", ExitCode::Refused, kOdd},
    {ErrorCode::IdentityRoleMissing, "IdentityRoleMissing", ExitCode::Refused, kOdd},
    {ErrorCode::IdentityNameMissing, "IdentityNameMissing", ExitCode::Refused, kOdd},
    {ErrorCode::PathInvalidId, "PathInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::PathItemNotFound, "PathItemNotFound", ExitCode::Refused, kFind},
    {ErrorCode::CreateFolderInvalidId, "CreateFolderInvalidId", ExitCode::Refused, kIdentifier},
    {ErrorCode::CreateFolderNameExists, "CreateFolderNameExists", ExitCode::Refused,
     "Choose another name, or use the folder that is there."},
    {ErrorCode::CreateFolderInvalidName, "CreateFolderInvalidName", ExitCode::Refused,
     "Choose a name without the characters that the service lists."},
    {ErrorCode::DeleteInvalidId, "DeleteInvalidId", ExitCode::Refused, kIdentifier},
}};

} // namespace

const ErrorText& FindErrorText(double code) {
    const auto row = std::find_if(kErrorTexts.begin(), kErrorTexts.end(),
                                  [code](const ErrorText& text) { return text.code == code; });
    return row == kErrorTexts.end() ? kErrorTexts.front() : *row;
}

} // namespace brevint::cli

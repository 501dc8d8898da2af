#pragma once

// Written by scripts/write-tables from resources/ErrorCodes.inc.

/// Names of the numbers that IReadOnlyResponse::GetErrorCode returns. DescribeError
/// (brevint/ErrorDescription.h) tells what each means.
namespace ErrorCode {

/// Calls: all. Meaning: the response has not been filled yet, or the server sent a message that the
/// call has no code for; its words are in GetServerErrorMessage.
inline constexpr double MessageNotRecognised = 1100;
/// Calls: all. Meaning: the call succeeded; a sign-out has this code whatever came of it, and
/// GetSignOutResult tells.
inline constexpr double Success = 1101;
/// Calls: all but identity, sign-out. Meaning: nothing arrived: no connection, a reply that broke
/// off, or an empty one; or memory ended.
inline constexpr double EmptyReply = 1102;
/// Calls: all but identity, sign-out, versions. Meaning: nobody is signed in, or the user may not
/// do this.
inline constexpr double AuthorizationFailed = 1103;
/// Calls: all but sign-out. Meaning: the reply is not the service's: not XML, or a job's state that
/// makes no sense; for identity, also that nothing arrived.
inline constexpr double ReplyNotXml = 1104;
/// Calls: check-in, check-out. Meaning: what was given as identifier is none.
inline constexpr double CheckInOutInvalidId = 1200;
/// Calls: check-in, check-out. Meaning: folders cannot be checked in or out.
inline constexpr double CheckInOutOfFolder = 1201;
/// Calls: check-in, check-out. Meaning: there is no such item.
inline constexpr double CheckInOutItemNotFound = 1202;
/// Calls: check-out. Meaning: the item is checked out already.
inline constexpr double CheckInOutAlreadyCheckedOut = 1203;
/// Calls: check-in, check-out. Meaning: another user has the item checked out.
inline constexpr double CheckInOutByAnotherUser = 1205;
/// Calls: download. Meaning: there is no such item.
inline constexpr double DownloadItemNotFound = 1300;
/// Calls: download. Meaning: what was given as identifier is none.
inline constexpr double DownloadInvalidId = 1301;
/// Calls: download. Meaning: the file arrived, but could not be written to its destination.
inline constexpr double DownloadWriteFailed = 1302;
/// Calls: list. Meaning: there is no such item.
inline constexpr double FolderContentsItemNotFound = 1400;
/// Calls: list. Meaning: what was given as identifier is none.
inline constexpr double FolderContentsInvalidId = 1401;
/// Calls: list. Meaning: the item is not a folder.
inline constexpr double FolderContentsNotAFolder = 1402;
/// Calls: overwrite, its job. Meaning: what was given as identifier is none.
inline constexpr double OverwriteInvalidId = 1501;
/// Calls: overwrite, its job. Meaning: there is no such item.
inline constexpr double OverwriteItemNotFound = 1502;
/// Calls: overwrite, its job. Meaning: the item is not a file.
inline constexpr double OverwriteNotAFile = 1503;
/// Calls: overwrite, its job. Meaning: another user has the item checked out.
inline constexpr double OverwriteCheckedOutByAnotherUser = 1504;
/// Calls: job of an overwrite. Meaning: the service did not accept the file's content.
inline constexpr double OverwriteFileRejected = 1505;
/// Calls: none. Meaning: reserved, never produced.
inline constexpr double OverwriteFileRejectedSecond = 1506;
/// Calls: none. Meaning: reserved, never produced.
inline constexpr double OverwriteFileRejectedThird = 1507;
/// Calls: overwrite. Meaning: no file arrived: the local file could not be read.
inline constexpr double OverwriteNoFile = 1508;
/// Calls: upload, its job. Meaning: the folder holds an item of that name already.
inline constexpr double UploadNameExists = 1600;
/// Calls: upload, its job. Meaning: what was given as identifier is none.
inline constexpr double UploadInvalidId = 1601;
/// Calls: upload, its job. Meaning: there is no such folder.
inline constexpr double UploadItemNotFound = 1602;
/// Calls: upload, its job. Meaning: the item is not a folder.
inline constexpr double UploadNotAFolder = 1603;
/// Calls: job of an upload. Meaning: the service did not accept the file's content.
inline constexpr double UploadFileRejected = 1605;
/// Calls: none. Meaning: reserved, never produced.
inline constexpr double UploadFileRejectedSecond = 1606;
/// Calls: none. Meaning: reserved, never produced.
inline constexpr double UploadFileRejectedThird = 1607;
/// Calls: upload, its job. Meaning: projects cannot be added to a template repository.
inline constexpr double UploadProjectToTemplates = 1608;
/// Calls: upload, its job. Meaning: templates cannot be added to a project repository.
inline constexpr double UploadTemplateToProjects = 1609;
/// Calls: upload, overwrite. Meaning: the service accepted the file but named no job.
inline constexpr double JobIdMissing = 1610;
/// Calls: upload. Meaning: no file arrived: the local file could not be read.
inline constexpr double UploadNoFile = 1611;
/// Calls: identity. Meaning: the reply does not name the identifying party.
inline constexpr double IdentityPartyMissing = 1701;
/// Calls: identity. Meaning: the reply names neither role.
inline constexpr double IdentityRoleMissing = 1702;
/// Calls: identity. Meaning: the reply does not name the user.
inline constexpr double IdentityNameMissing = 1703;
/// Calls: path. Meaning: what was given as identifier is none.
inline constexpr double PathInvalidId = 1900;
/// Calls: path. Meaning: there is no such item.
inline constexpr double PathItemNotFound = 1901;
/// Calls: create folder. Meaning: what was given as identifier of the parent is none.
inline constexpr double CreateFolderInvalidId = 2000;
/// Calls: create folder. Meaning: the parent holds a folder of that name already.
inline constexpr double CreateFolderNameExists = 2001;
/// Calls: create folder. Meaning: the name holds a character that names must not have.
inline constexpr double CreateFolderInvalidName = 2002;
/// Calls: delete. Meaning: what was given as identifier is none.
inline constexpr double DeleteInvalidId = 2100;

} // namespace ErrorCode

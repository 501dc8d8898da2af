#pragma once

/// Names of the numbers that IReadOnlyResponse::GetErrorCode returns.
namespace ErrorCode {

// Every call.
/// Not filled yet, or a message without a code.
inline constexpr double MessageNotRecognised = 1100;
/// The call succeeded. A sign-out has no other code: CSignOutResponse::GetSignOutResult tells.
inline constexpr double Success = 1101;
/// Nothing arrived: no connection, a reply that broke off, or an empty one. Or memory ended. Not
/// for the identity, which has ReplyNotXml then.
inline constexpr double EmptyReply = 1102;
/// Nobody is signed in, or the user may not do this.
inline constexpr double AuthorizationFailed = 1103;
/// The reply is not the service's. For the identity, also that there is none.
inline constexpr double ReplyNotXml = 1104;

// Check-in and check-out.
/// What was given as identifier is none.
inline constexpr double CheckInOutInvalidId = 1200;
/// Folders cannot be checked in or out.
inline constexpr double CheckInOutOfFolder = 1201;
/// There is no such item.
inline constexpr double CheckInOutItemNotFound = 1202;
/// The item is checked out already.
inline constexpr double CheckInOutAlreadyCheckedOut = 1203;
/// Another user has the item checked out.
inline constexpr double CheckInOutByAnotherUser = 1205;

// Download.
/// There is no such item.
inline constexpr double DownloadItemNotFound = 1300;
/// What was given as identifier is none.
inline constexpr double DownloadInvalidId = 1301;
/// The destination could not be written.
inline constexpr double DownloadWriteFailed = 1302;

// Folder contents.
/// There is no such item.
inline constexpr double FolderContentsItemNotFound = 1400;
/// What was given as identifier is none.
inline constexpr double FolderContentsInvalidId = 1401;
/// The item is not a folder.
inline constexpr double FolderContentsNotAFolder = 1402;

// Overwrite and its job.
/// What was given as identifier is none.
inline constexpr double OverwriteInvalidId = 1501;
/// There is no such item.
inline constexpr double OverwriteItemNotFound = 1502;
/// The item is not a file.
inline constexpr double OverwriteNotAFile = 1503;
/// Another user has the item checked out.
inline constexpr double OverwriteCheckedOutByAnotherUser = 1504;
/// The service did not accept the file's content.
inline constexpr double OverwriteFileRejected = 1505;
/// Reserved, never produced.
inline constexpr double OverwriteFileRejectedSecond = 1506;
/// Reserved, never produced.
inline constexpr double OverwriteFileRejectedThird = 1507;
/// The local file could not be read.
inline constexpr double OverwriteNoFile = 1508;

// Upload and its job.
/// The folder holds an item of that name already.
inline constexpr double UploadNameExists = 1600;
/// What was given as identifier is none.
inline constexpr double UploadInvalidId = 1601;
/// There is no such folder.
inline constexpr double UploadItemNotFound = 1602;
/// The item is not a folder.
inline constexpr double UploadNotAFolder = 1603;
/// The service did not accept the file's content.
inline constexpr double UploadFileRejected = 1605;
/// Reserved, never produced.
inline constexpr double UploadFileRejectedSecond = 1606;
/// Reserved, never produced.
inline constexpr double UploadFileRejectedThird = 1607;
/// Projects cannot be added to a template repository.
inline constexpr double UploadProjectToTemplates = 1608;
/// Templates cannot be added to a project repository.
inline constexpr double UploadTemplateToProjects = 1609;
/// Uploads and overwrites: accepted, but the reply names no job.
inline constexpr double JobIdMissing = 1610;
/// The local file could not be read.
inline constexpr double UploadNoFile = 1611;

// Identity.
/// The reply does not name the identifying party.
inline constexpr double IdentityPartyMissing = 1701;
/// The reply names neither role.
inline constexpr double IdentityRoleMissing = 1702;
/// The reply does not name the user.
inline constexpr double IdentityNameMissing = 1703;

// Path.
/// What was given as identifier is none.
inline constexpr double PathInvalidId = 1900;
/// There is no such item.
inline constexpr double PathItemNotFound = 1901;

// Create folder.
/// What was given as identifier of the parent is none.
inline constexpr double CreateFolderInvalidId = 2000;
/// The parent holds a folder of that name already.
inline constexpr double CreateFolderNameExists = 2001;
/// The name holds a character that names must not have.
inline constexpr double CreateFolderInvalidName = 2002;

// Delete.
/// What was given as identifier is none.
inline constexpr double DeleteInvalidId = 2100;

} // namespace ErrorCode

#pragma once

/// Names of the numbers that IReadOnlyResponse::GetErrorCode returns.
namespace ErrorCode {

// Every call.
inline constexpr double MessageNotRecognised =
    1100; ///< not filled yet, or a message without a code
inline constexpr double Success = 1101;
inline constexpr double EmptyReply = 1102; ///< nothing arrived: no connection, or an empty reply
inline constexpr double AuthorizationFailed = 1103;
inline constexpr double ReplyNotXml = 1104;

// Check-in and check-out.
inline constexpr double CheckInOutInvalidId = 1200;
inline constexpr double CheckInOutOfFolder = 1201;
inline constexpr double CheckInOutItemNotFound = 1202;
inline constexpr double CheckInOutAlreadyCheckedOut = 1203;
inline constexpr double CheckInOutByAnotherUser = 1205;

// Download.
inline constexpr double DownloadItemNotFound = 1300;
inline constexpr double DownloadInvalidId = 1301;
inline constexpr double DownloadWriteFailed = 1302; ///< the destination could not be written

// Folder contents.
inline constexpr double FolderContentsItemNotFound = 1400;
inline constexpr double FolderContentsInvalidId = 1401;
inline constexpr double FolderContentsNotAFolder = 1402;

// Overwrite and its job.
inline constexpr double OverwriteInvalidId = 1501;
inline constexpr double OverwriteItemNotFound = 1502;
inline constexpr double OverwriteNotAFile = 1503;
inline constexpr double OverwriteCheckedOutByAnotherUser = 1504;
inline constexpr double OverwriteFileRejected = 1505;
inline constexpr double OverwriteFileRejectedSecond = 1506; ///< reserved, never produced
inline constexpr double OverwriteFileRejectedThird = 1507;  ///< reserved, never produced
inline constexpr double OverwriteNoFile = 1508;

// Upload and its job.
inline constexpr double UploadNameExists = 1600;
inline constexpr double UploadInvalidId = 1601;
inline constexpr double UploadItemNotFound = 1602;
inline constexpr double UploadNotAFolder = 1603;
inline constexpr double UploadFileRejected = 1605;
inline constexpr double UploadFileRejectedSecond = 1606; ///< reserved, never produced
inline constexpr double UploadFileRejectedThird = 1607;  ///< reserved, never produced
inline constexpr double UploadProjectToTemplates = 1608;
inline constexpr double UploadTemplateToProjects = 1609;
inline constexpr double JobIdMissing = 1610; ///< of uploads and of overwrites
inline constexpr double UploadNoFile = 1611;

// Identity.
inline constexpr double IdentityPartyMissing = 1701;
inline constexpr double IdentityRoleMissing = 1702;
inline constexpr double IdentityNameMissing = 1703;

// Path.
inline constexpr double PathInvalidId = 1900;
inline constexpr double PathItemNotFound = 1901;

// Create folder.
inline constexpr double CreateFolderInvalidId = 2000;
inline constexpr double CreateFolderNameExists = 2001;
inline constexpr double CreateFolderInvalidName = 2002;

// Delete.
inline constexpr double DeleteInvalidId = 2100;

} // namespace ErrorCode

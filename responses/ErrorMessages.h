#pragma once

/// Messages of the server that have a code, in lower case.
namespace ErrorMessage {

inline constexpr const wchar_t* AuthorizationFailed = L"authorization failed.";
inline constexpr const wchar_t* ItemNotFound = L"requested item not found.";
inline constexpr const wchar_t* InvalidId =
    L"guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx).";
inline constexpr const wchar_t* NotAFolder = L"requested item is not a folder.";
inline constexpr const wchar_t* NotAFile = L"specified item is not a file.";
inline constexpr const wchar_t* AlreadyCheckedOut = L"item already checked out.";
inline constexpr const wchar_t* AlreadyCheckedIn = L"item already checked in.";
inline constexpr const wchar_t* CheckedOutToAnotherUser = L"item checked out to another user.";
inline constexpr const wchar_t* CannotLockFolders = L"cannot check-out or check-in folders.";
inline constexpr const wchar_t* InvalidName =
    L"please specify a name that does not contain the following characters:  "
    L"\\ / : * ? \" < > |";
inline constexpr const wchar_t* NameExists =
    L"there is an item with the same name already in this location.";
inline constexpr const wchar_t* ProjectToTemplates = L"cannot add projects to template repository.";
inline constexpr const wchar_t* TemplateToProjects = L"cannot add templates to project repository.";
inline constexpr const wchar_t* NoFilesFound = L"no files found.";
inline constexpr const wchar_t* FolderExistsPrefix =
    L"the destination already contains a folder named '";
inline constexpr const wchar_t* ConversionPrefix = L"error converting value";
inline constexpr const wchar_t* ProvidedFilePrefix = L"the provided file ('";

} // namespace ErrorMessage

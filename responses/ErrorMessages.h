#pragma once

/// Messages of the server that more than one call can bring, in lower case.
namespace ErrorMessage {

inline constexpr const wchar_t* AuthorizationFailed = L"authorization failed.";
inline constexpr const wchar_t* ItemNotFound = L"requested item not found.";
inline constexpr const wchar_t* InvalidId =
    L"guid should contain 32 digits with 4 dashes (xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx).";
inline constexpr const wchar_t* NotAFolder = L"requested item is not a folder.";
inline constexpr const wchar_t* NotAFile = L"specified item is not a file.";
inline constexpr const wchar_t* CheckedOutToAnotherUser = L"item checked out to another user.";
inline constexpr const wchar_t* NameExists =
    L"there is an item with the same name already in this location.";
inline constexpr const wchar_t* ProjectToTemplates = L"cannot add projects to template repository.";
inline constexpr const wchar_t* TemplateToProjects = L"cannot add templates to project repository.";
inline constexpr const wchar_t* NoFilesFound = L"no files found.";
inline constexpr const wchar_t* ConversionPrefix = L"error converting value";
inline constexpr const wchar_t* ProvidedFilePrefix = L"the provided file ('";

} // namespace ErrorMessage

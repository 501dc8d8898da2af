#pragma once

/// Identifiers of the folders that hold all others. A service may have others than these, which are
/// the reference service's.
namespace RootFolder {

inline constexpr const wchar_t* Projects =
    L"00000000-0000-0000-0000-000000000001"; ///< "/Projects".
inline constexpr const wchar_t* Templates =
    L"00000000-0000-0000-0000-000000000002"; ///< "/Templates".

} // namespace RootFolder

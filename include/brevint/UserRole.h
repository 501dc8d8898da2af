#pragma once

/// What CIdentityResponse::GetUserRole returns.
namespace UserRole {

inline constexpr int Unknown = 0;       ///< Nobody could be asked, or the reply names no role.
inline constexpr int Administrator = 1; ///< May change templates too.
inline constexpr int User = 2;          ///< May change projects.

} // namespace UserRole

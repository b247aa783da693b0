#pragma once

namespace tarnwell::foundation {

inline constexpr int noErr = 0;
inline constexpr int fnfErr = -43;                       ///< no such file
inline constexpr int paramErr = -50;                     ///< a missing or unusable argument
inline constexpr int kLSApplicationNotFoundErr = -10814; ///< not an application
inline constexpr int kLSUnknownErr = -10810;             ///< the application did not start

/// What a status means, in a few words for a log line or the status line; an empty text for codes
/// that nothing here returns. The text is static.
const char *GetMacOSStatusCommentString(int status);

} // namespace tarnwell::foundation

#pragma once

namespace tarnwell::foundation {

inline constexpr int noErr = 0;
inline constexpr int dskFulErr = -34;                    ///< no room on the disk
inline constexpr int ioErr = -36;                        ///< the disk could not be read or written
inline constexpr int bdNamErr = -37;                     ///< a name that no file can have
inline constexpr int fnfErr = -43;                       ///< no such file
inline constexpr int wPrErr = -44;                       ///< nothing can be written on the disk
inline constexpr int dupFNErr = -48;                     ///< there is a file of the name already
inline constexpr int paramErr = -50;                     ///< a missing or unusable argument
inline constexpr int dirNFErr = -120;                    ///< no such folder
inline constexpr int errFSNotAFolder = -1407;            ///< a file where a folder is meant
inline constexpr int pathTooLongErr = -2110;             ///< a path that the caller has no room for
inline constexpr int afpAccessDenied = -5000;            ///< permission denied
inline constexpr int kLSApplicationNotFoundErr = -10814; ///< not an application
inline constexpr int kLSUnknownErr = -10810;             ///< the application did not start

/// What a status means, in a few words for a log line or the status line; an empty text for codes
/// that nothing here returns. The text is static.
const char *GetMacOSStatusCommentString(int status);

} // namespace tarnwell::foundation

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace tarnwell::foundation {

/// Why a file was not read.
struct FileReadError
{
    enum Reason {
        None,
        Folder,   ///< it is a folder
        NotAFile, ///< a pipe, a device, a socket
        TooLarge, ///< it is larger than the caller takes
        System    ///< the system said no: systemCode
    };

    Reason reason = None;
    int systemCode = 0; ///< an errno value: ENOENT when there is no such file

    /// One sentence in the user's language. The size is the one that the reader was given.
    QString inWords(qint64 maximumSize) const;
};

/// The contents of a plain file of at most maximumSize bytes. Nothing when there is no such file,
/// when it cannot be read, when it is larger, or when it is no plain file: a pipe or a device that
/// somebody put there is neither waited for nor opened. Every file that this program reads whole is
/// read by this function or by the next one.
std::optional<QByteArray> readBoundedFile(const QString &path, qint64 maximumSize,
                                          FileReadError *error = nullptr);

/// The same for a file that is open already; it is read from its beginning, and stays open.
std::optional<QByteArray> readBoundedFile(int descriptor, qint64 maximumSize,
                                          FileReadError *error = nullptr);

} // namespace tarnwell::foundation

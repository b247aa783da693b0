#include "foundation/BoundedFile.h"

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarnwell::foundation {

namespace {

std::nullopt_t failed(FileReadError *error, FileReadError::Reason reason, int code = 0)
{
    if (error)
        *error = {reason, code};
    return std::nullopt;
}

/// What keeps a file from being read whole, if anything does.
FileReadError objectionTo(const struct stat &facts, qint64 maximumSize)
{
    if (S_ISDIR(facts.st_mode))
        return {FileReadError::Folder};
    if (!S_ISREG(facts.st_mode))
        return {FileReadError::NotAFile};
    if (facts.st_size > maximumSize)
        return {FileReadError::TooLarge};
    return {};
}

} // namespace

QString FileReadError::inWords(qint64 maximumSize) const
{
    constexpr qint64 megabyte = 1'000'000;
    const auto text = [](const char *source) {
        return QCoreApplication::translate("FileReadError", source);
    };
    switch (reason) {
    case None:
        return {};
    case Folder:
        return text("It is a folder.");
    case NotAFile:
        return text("It is a pipe, a socket or a device, and not a file.");
    case TooLarge:
        return text("It is larger than %1 MB.").arg((maximumSize + megabyte - 1) / megabyte);
    case System:
        break;
    }
    if (systemCode == ENOENT || systemCode == ENOTDIR)
        return text("It does not exist.");
    if (systemCode == EACCES || systemCode == EPERM)
        return text("You may not read it.");
    return text("It cannot be read: %1.").arg(qt_error_string(systemCode));
}

std::optional<QByteArray> readBoundedFile(int descriptor, qint64 maximumSize, FileReadError *error)
{
    struct stat facts;
    if (::fstat(descriptor, &facts) != 0)
        return failed(error, FileReadError::System, errno);
    if (const FileReadError objection = objectionTo(facts, maximumSize); objection.reason)
        return failed(error, objection.reason);

    // Files of the kernel say that they are empty, and any file may grow while it is read.
    QByteArray bytes(qsizetype(facts.st_size) + 1, Qt::Uninitialized);
    qsizetype length = 0;
    for (;;) {
        if (length > maximumSize)
            return failed(error, FileReadError::TooLarge);
        if (length == bytes.size())
            bytes.resize(qMin(qsizetype(maximumSize) + 1, qMax(length * 2, qsizetype(4096))));
        const ssize_t got = ::pread(descriptor, bytes.data() + length,
                                    size_t(bytes.size() - length), off_t(length));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return failed(error, FileReadError::System, errno);
        if (got == 0)
            break;
        length += got;
    }
    bytes.truncate(length);
    return bytes;
}

std::optional<QByteArray> readBoundedFile(const QString &path, qint64 maximumSize,
                                          FileReadError *error)
{
    if (path.contains(QChar()))
        return failed(error, FileReadError::System, ENOENT);
    const QByteArray name = QFile::encodeName(path);
    // Opening some devices does something already, so it is looked at before.
    struct stat facts;
    if (::stat(name.constData(), &facts) != 0)
        return failed(error, FileReadError::System, errno);
    if (const FileReadError objection = objectionTo(facts, maximumSize); objection.reason)
        return failed(error, objection.reason);
    // Without O_NONBLOCK a pipe that took the file's place meanwhile would hold us for ever.
    const int descriptor = ::open(name.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return failed(error, FileReadError::System, errno);
    auto bytes = readBoundedFile(descriptor, maximumSize, error);
    ::close(descriptor);
    return bytes;
}

} // namespace tarnwell::foundation

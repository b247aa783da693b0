#include "desktop/LinuxSystemFacts.h"

#include "foundation/BoundedFile.h"
#include "foundation/Bundle.h"

#include <QDir>
#include <QFileInfo>

#include <sys/utsname.h>
#include <unistd.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

/// The level of the interfaces that the pane was written against.
constexpr qint32 interfaceLevel = 0x1068;

constexpr qint64 maximumReleaseFile = 64 * 1024;

/// The value of VERSION_ID, unquoted; empty where a distribution has no versions.
QString distributionVersion(const QString &rootPath)
{
    for (const QString &name : {u"/etc/os-release"_s, u"/usr/lib/os-release"_s}) {
        const auto bytes = foundation::readBoundedFile(rootPath + name, maximumReleaseFile);
        if (!bytes)
            continue;
        const QList<QByteArray> lines = bytes->split('\n');
        for (const QByteArray &line : lines) {
            if (!line.startsWith("VERSION_ID="))
                continue;
            QString value = QString::fromUtf8(line.sliced(11)).trimmed();
            value.remove(u'"').remove(u'\'');
            return value;
        }
        return {};
    }
    return {};
}

QString kernelRelease()
{
    utsname names{};
    return ::uname(&names) == 0 ? QString::fromLocal8Bit(names.release) : QString();
}

bool startsWithDigit(const QString &text)
{
    return !text.isEmpty() && text.front() >= u'0' && text.front() <= u'9';
}

/// The leading numbers of a version such as "22.04" or "6.1.0-13-amd64". Of a number that is too
/// large the lower 31 bits are kept, so that those of two releases still differ.
std::array<qint32, 3> numbers(const QString &version)
{
    std::array<qint32, 3> result{};
    const QStringList parts = version.split(u'.');
    for (qsizetype i = 0; i < qsizetype(result.size()) && i < parts.size(); ++i) {
        const QString &part = parts.at(i);
        qsizetype digits = 0;
        quint64 number = 0;
        for (; digits < part.size() && part.at(digits) >= u'0' && part.at(digits) <= u'9'; ++digits)
            number = (number * 10 + (part.at(digits).unicode() - u'0')) & 0x7FFFFFFF;
        result[size_t(i)] = qint32(number);
        if (digits < part.size())
            break;
    }
    return result;
}

} // namespace

LinuxSystemFacts::LinuxSystemFacts(const QString &rootPath, const QString &executablePath)
    : m_rootPath(rootPath)
    , m_executablePath(executablePath)
{}

quint32 LinuxSystemFacts::realUserId() const
{
    return ::getuid();
}

quint32 LinuxSystemFacts::effectiveUserId() const
{
    return ::geteuid();
}

QString LinuxSystemFacts::ownExecutablePath()
{
    return QFileInfo(u"/proc/self/exe"_s).symLinkTarget();
}

QString LinuxSystemFacts::mainBundlePath() const
{
    QDir folder = QFileInfo(m_executablePath).dir();
    // The Contents folder of a bundle looks like a flat bundle itself.
    do {
        if (folder.dirName() != "Contents"_L1 && foundation::Bundle::open(folder.path()))
            return folder.path();
    } while (folder.cdUp());
    return m_executablePath;
}

std::optional<qint32> LinuxSystemFacts::gestalt(quint32 selector) const
{
    switch (selector) {
    case ports::fourCharacterCode("sysv"):
        return interfaceLevel;
    case ports::fourCharacterCode("sys1"):
        return systemVersion()[0];
    case ports::fourCharacterCode("sys2"):
        return systemVersion()[1];
    case ports::fourCharacterCode("sys3"):
        return systemVersion()[2];
    default:
        return std::nullopt;
    }
}

const std::array<qint32, 3> &LinuxSystemFacts::systemVersion() const
{
    if (!m_systemVersion) {
        const QString distribution = distributionVersion(m_rootPath);
        m_systemVersion = numbers(startsWithDigit(distribution) ? distribution : kernelRelease());
    }
    return *m_systemVersion;
}

} // namespace tarnwell::desktop

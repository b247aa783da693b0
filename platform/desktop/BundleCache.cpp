#include "desktop/BundleCache.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using foundation::Bundle;

namespace {

constexpr qsizetype mostEntries = 16384;

bool isDesktopEntry(const QString &path)
{
    return path.endsWith(".desktop"_L1);
}

} // namespace

std::optional<DescribingFile> describingFile(const QString &path)
{
    // Lists name many applications that are gone, so that is found out with one question.
    const std::optional<FileStamp> itself = FileStamp::of(path);
    if (!itself)
        return std::nullopt;
    static constexpr QLatin1StringView endings[] = {"/Contents/Info.plist"_L1, "/Info.plist"_L1,
                                                    "/Resources/Info.plist"_L1,
                                                    "/Resources/Info-gnustep.plist"_L1};
    for (const QLatin1StringView ending : endings) {
        const QString file = path + ending;
        if (const std::optional<FileStamp> stamp = FileStamp::of(file))
            return DescribingFile{file, *stamp};
    }
    return DescribingFile{path, *itself};
}

BundleCache::Entry *BundleCache::entryAt(const QString &path) const
{
    if (path.isEmpty())
        return nullptr;
    const auto known = m_entries.find(path);
    if (known != m_entries.end()) {
        if (known->wasSettled && FileStamp::of(known->file.path) == known->file.stamp)
            return &*known;
        m_entries.erase(known);
    }
    const std::optional<DescribingFile> file = describingFile(path);
    // Only desktop entries describe themselves.
    if (!file || (file->path == path && !isDesktopEntry(path)))
        return nullptr;
    const bool isSettled = file->stamp.isSettled();
    const std::optional<Bundle> bundle = Bundle::open(path);
    if (!bundle)
        return nullptr;
    if (m_entries.size() >= mostEntries)
        m_entries.clear();
    return &*m_entries.insert(path, {*file, isSettled, *bundle, {}});
}

std::optional<Bundle> BundleCache::bundleAt(const QString &path) const
{
    const Entry *entry = entryAt(path);
    return entry ? std::optional(entry->bundle) : std::nullopt;
}

QString BundleCache::displayNameAt(const QString &path) const
{
    struct stat status = {};
    const auto exists = [&] {
        return !path.isEmpty() && ::stat(QFile::encodeName(path).constData(), &status) == 0;
    };
    const bool wasKnown = m_entries.contains(path);
    if (!wasKnown && !exists())
        return {};
    // Names are wanted of thousands of plain files at a time.
    if (wasKnown || S_ISDIR(status.st_mode) || isDesktopEntry(path)) {
        if (Entry *entry = entryAt(path)) {
            if (entry->displayName.isEmpty())
                entry->displayName = entry->bundle.displayName();
            return entry->displayName;
        }
    }
    if (wasKnown && !exists())
        return {};
    const QString clean = QDir::cleanPath(path);
    return clean.sliced(clean.lastIndexOf(u'/') + 1);
}

} // namespace tarnwell::desktop

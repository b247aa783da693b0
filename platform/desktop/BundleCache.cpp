#include "desktop/BundleCache.h"

#include <QDir>
#include <QFileInfo>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;
using foundation::Bundle;

namespace {

constexpr qsizetype mostEntries = 16384;

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
    if (!file)
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
    if (!m_entries.contains(path) && !FileStamp::of(path))
        return {};
    if (Entry *entry = entryAt(path)) {
        if (entry->displayName.isEmpty())
            entry->displayName = entry->bundle.displayName();
        return entry->displayName;
    }
    const QFileInfo info(QDir::cleanPath(path));
    return !path.isEmpty() && info.exists() ? info.fileName() : QString();
}

} // namespace tarnwell::desktop

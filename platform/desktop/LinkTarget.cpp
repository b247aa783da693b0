#include "desktop/LinkTarget.h"

#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>

namespace tarnwell::desktop {

namespace {

constexpr int maximumLinks = 40;

/// The user that files are opened as.
uid_t ownUser()
{
    // Asked for a user that does not exist, the call only tells the present one.
    return uid_t(::setfsuid(uid_t(-1)));
}

bool isOursOrRoots(const struct stat &facts)
{
    return facts.st_uid == 0 || facts.st_uid == ownUser();
}

bool mayFollow(const QByteArray &link)
{
    struct stat folder, self;
    if (::stat(folderOf(link).constData(), &folder) != 0 || ::lstat(link.constData(), &self) != 0)
        return false;
    const bool canOthersWrite =
        (folder.st_mode & (S_IWGRP | S_IWOTH)) != 0 || !isOursOrRoots(folder);
    return !canOthersWrite || isOursOrRoots(self);
}

} // namespace

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? "." : slash == 0 ? "/" : path.first(slash);
}

std::optional<LinkTarget> linkTarget(const QByteArray &path)
{
    LinkTarget target{path};
    for (int i = 0; i < maximumLinks; ++i) {
        char text[PATH_MAX];
        const ssize_t length = ::readlink(target.path.constData(), text, sizeof text);
        if (length <= 0 || length == ssize_t(sizeof text))
            return target;
        if (!mayFollow(target.path)) {
            target.isRefusedLink = true;
            return target;
        }
        const QByteArray next(text, length);
        target.path = next.startsWith('/') ? next : folderOf(target.path) + '/' + next;
    }
    return std::nullopt;
}

} // namespace tarnwell::desktop

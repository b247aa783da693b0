#pragma once

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace tarnwell::foundation {
class Bundle;
}
namespace tarnwell::ports {
class FileManager;
class Folders;
} // namespace tarnwell::ports

namespace tarnwell::effects {

/// Appends the compositions in a folder and, at depth 0, in the folders right inside it. Folders of
/// logs and of chat icons are passed over, with a line in the log. Returns 0 or the status of the
/// folder that was looked into last.
int SEScanFolderForQTZ(const ports::FileManager &fileManager, const ports::Folders &folders,
                       const QString &folder, QList<QUrl> &results, int depth);

/// Orders compositions by their display names, without regard to case: negative, zero or positive.
/// What is no URL comes first, whatever it is compared with, and what has no name comes last.
int SECompareURLsByDisplayName(const ports::FileManager &fileManager, const QUrl &a, const QUrl &b);

/// Puts compositions that were just found into that order. They are plain files, which go by their
/// own names, so nothing is asked of the disk: there may be thousands.
void sortByDisplayName(QList<QUrl> &compositions);

/// The compositions of this machine, by where they were found.
struct FoundCompositions
{
    QList<QUrl> applicationSupport;
    int localStatus = 0; ///< of the walk through the local domain's application support
    bool hasBundle = false;
    QList<QUrl> bundled;
    QList<QUrl> screenSavers;
};

FoundCompositions findCompositions(const ports::FileManager &fileManager,
                                   const ports::Folders &folders,
                                   const std::optional<foundation::Bundle> &bundle);

/// The part of the plug-in that plays effects, with its own compositions: the first of the places
/// where a plug-in may be installed, switched-off ones included. Nothing when it is nowhere.
std::optional<foundation::Bundle> findSillyEffectBundle(const ports::FileManager &fileManager);

} // namespace tarnwell::effects

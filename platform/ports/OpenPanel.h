#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace tarnwell::ports {

/// What an open panel for applications offers, and how it is labelled.
struct ApplicationPanel
{
    QString title;
    QString prompt;    ///< on the button that confirms
    QString folder;    ///< where browsing begins, a path of this machine
    QStringList types; ///< extensions of what may be chosen, without the dot
    bool allowsMultipleSelection = false;
    bool treatsFilePackagesAsDirectories = false;
    bool canChooseDirectories = false;
    bool canChooseFiles = true;
};

/// Window-modal panels by which the user chooses applications and files. Nothing waits: the answer
/// comes through a callback, from the event loop, also (as cancelled) when the window below goes
/// away first. One that is still due when the panels themselves go away never comes.
class OpenPanel
{
public:
    static constexpr int okButton = 1;
    static constexpr int cancelButton = 0;

    /// The paths are in the order in which the panel shows them; none when it was cancelled.
    using ApplicationsDidEnd = std::function<void(int returnCode, const QStringList &paths)>;
    /// The path is empty when the user cancelled.
    using FileDidEnd = std::function<void(const QString &path)>;

    virtual ~OpenPanel() = default;

    /// Lets the user choose among the installed applications, or browse for another one.
    virtual void chooseApplications(const ApplicationPanel &panel, QWidget *onWindowOf,
                                    ApplicationsDidEnd didEnd) = 0;

    /// Lets the user choose an existing file. Filters read "Property lists (*.plist)".
    virtual void chooseFileToOpen(const QString &title, const QStringList &filters,
                                  QWidget *onWindowOf, FileDidEnd didEnd) = 0;

    /// Lets the user say where a file is to be written; asks before an existing one is chosen. A
    /// name without an extension gets that of the suggested one.
    virtual void chooseFileToSave(const QString &title, const QString &suggestedName,
                                  QWidget *onWindowOf, FileDidEnd didEnd) = 0;
};

} // namespace tarnwell::ports

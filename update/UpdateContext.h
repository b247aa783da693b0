#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::ports {
class Applications;
class Clock;
class FileManager;
class LockFiles;
class Preferences;
class Session;
class SystemFacts;
} // namespace tarnwell::ports

namespace tarnwell::update {

/// What the update functions remember for the life of the process. Whoever calls them keeps one
/// and hands it to every call.
struct UpdateProcessState
{
    QString productName; ///< for the log lines; of the module that was looked at last
    std::optional<quint32> systemVersion;
    QStringList excludedHosts; ///< empty until first needed
    bool logsDiagnostics = false;
};

/// The services that the update functions stand on; they live longer than any call.
struct UpdateContext
{
    ports::Preferences &preferences;
    ports::Applications &applications;
    ports::FileManager &fileManager;
    ports::Clock &clock;
    ports::SystemFacts &systemFacts;
    ports::Session &session;
    ports::LockFiles &lockFiles;
    UpdateProcessState &state;
};

} // namespace tarnwell::update

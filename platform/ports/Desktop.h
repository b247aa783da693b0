#pragma once

namespace tarnwell::ports {

class Applications;
class Bookmarks;
class Clock;
class FileManager;
class FileStore;
class Folders;
class GlobalShortcuts;
class HostApplication;
class HttpFetcher;
class KeyboardLayouts;
class LockFiles;
class NotificationCenter;
class OpenPanel;
class Preferences;
class Session;
class Sheets;
class SystemFacts;
class Tasks;
class Timers;
class WindowServer;
class Workspace;

/// Every service that the pane asks of its desktop. Whoever makes it owns the services and keeps
/// them alive longer than the pane.
struct Desktop
{
    Preferences &preferences;
    Applications &applications;
    FileManager &fileManager;
    Bookmarks &bookmarks;
    KeyboardLayouts &keyboardLayouts;
    NotificationCenter &localNotifications;
    NotificationCenter &distributedNotifications;
    Workspace &workspace;
    Clock &clock;
    Timers &timers;
    SystemFacts &systemFacts;
    HostApplication &hostApplication;
    Sheets &sheets;
    OpenPanel &openPanel;
    HttpFetcher &httpFetcher;
    Tasks &tasks;
    FileStore &fileStore;
    Session &session;
    LockFiles &lockFiles;
    GlobalShortcuts &globalShortcuts;
    Folders &folders;
    WindowServer &windowServer;
};

} // namespace tarnwell::ports

#pragma once

#include "foundation/Bundle.h"

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUrl>

#include <optional>
#include <variant>

namespace tarnwell::ports {
class Applications;
class Bookmarks;
class FileManager;
class SystemFacts;
} // namespace tarnwell::ports

namespace tarnwell::prefs {

/// The name under which an application's settings are stored, or the global level, whose settings
/// count for every application that has none of its own.
class ApplicationIdentifier
{
public:
    explicit ApplicationIdentifier(const QString &string)
        : m_string(string)
    {}
    static ApplicationIdentifier global() { return ApplicationIdentifier(); }

    bool isGlobal() const { return !m_string; }

    /// The stored name; empty for the global level.
    QString string() const { return m_string.value_or(QString()); }

    friend bool operator==(const ApplicationIdentifier &, const ApplicationIdentifier &) = default;

private:
    ApplicationIdentifier() = default;

    std::optional<QString> m_string;
};

/// Which application a caller means: a bundle, this process, or the global level.
class ApplicationReference
{
public:
    ApplicationReference(const foundation::Bundle &bundle)
        : m_target(bundle)
    {}
    static ApplicationReference mainBundle() { return ApplicationReference(MainBundle{}); }
    static ApplicationReference global() { return ApplicationReference(Global{}); }

    bool isGlobal() const { return std::holds_alternative<Global>(m_target); }

    /// The bundle that was given; null for this process and for the global level.
    const foundation::Bundle *bundle() const { return std::get_if<foundation::Bundle>(&m_target); }

private:
    struct MainBundle
    {};
    struct Global
    {};
    using Target = std::variant<MainBundle, Global, foundation::Bundle>;

    explicit ApplicationReference(Target target)
        : m_target(std::move(target))
    {}

    Target m_target;
};

/// What the process has learnt of applications. It is made once, beside the desktop, and only ever
/// grows: an application keeps the identifier that it was first met with until the process ends,
/// so that settings written in one sitting all go to the same place.
struct ApplicationIdentityCache
{
    QHash<QString, QString> identifierOfBundle; ///< by the bundle's path
    QHash<QString, QString> identifierOfPath;
    QHash<QString, QString> displayNames;  ///< by identifier
    QHash<QString, QByteArray> aliasData;  ///< by identifier
    std::optional<QString> mainIdentifier; ///< of this process
};

/// What the identity of applications is found with. Everything outlives the calls that get it.
struct IdentityContext
{
    const ports::Applications &applications;
    const ports::FileManager &fileManager;
    const ports::Bookmarks &bookmarks;
    const ports::SystemFacts &systemFacts;
    ApplicationIdentityCache &cache;
};

/// The identifier of an application, optionally of an item (its path) that was launched in its
/// name. Always answers: the last resort is the name of the bundle's folder.
ApplicationIdentifier GetApplicationID(const IdentityContext &context,
                                       const ApplicationReference &application,
                                       const std::optional<QString> &path = std::nullopt);

/// The opaque record that finds a bundle again after it moved; nothing when none can be made.
std::optional<QByteArray> CopyAliasDataForBundle(const ports::Bookmarks &bookmarks,
                                                 const foundation::Bundle &bundle);

/// Where the application of an identifier is installed; an empty URL when it is not found, which
/// holds for every identifier that was made of a path or a name.
QUrl UrlForAppID(const ports::Applications &applications, const QString &identifier);

} // namespace tarnwell::prefs

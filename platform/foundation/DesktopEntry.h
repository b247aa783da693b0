#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace tarnwell::foundation {

/// What a freedesktop desktop entry says about an application.
class DesktopEntry
{
public:
    /// Reads the entry of a file. Nothing when the file is none, is too large, or describes
    /// anything but an application.
    static std::optional<DesktopEntry> read(const QString &path);

    /// Likewise, of the bytes of a file. Lines that make no sense are skipped.
    static std::optional<DesktopEntry> parse(const QByteArray &bytes);

    /// The desktop-file ID without its ending: the path below the nearest folder "applications",
    /// with dashes for slashes; the bare file name when it lies below none.
    static QString identifierForPath(const QString &path);

    /// The unlocalised value of a key, its escapes undone; empty when there is none.
    QString value(const QString &key) const;

    /// The value of a key for the first of these languages (BCP 47) that it has one for, else the
    /// unlocalised one.
    QString localizedValue(const QString &key, const QStringList &languages) const;

    bool booleanValue(const QString &key) const;

    /// Whether the entry says that there is no such application, whatever other folders hold: this
    /// is how a user deletes an application of the system.
    bool isDeleted() const { return booleanValue(QStringLiteral("Hidden")); }

    /// Whether menus leave the entry out.
    bool isHiddenFromMenus() const { return booleanValue(QStringLiteral("NoDisplay")); }

    /// The program that the entry starts, found in PATH; empty when it is not installed.
    QString executablePath() const;

    /// The command line that opens a document (its path; empty for none): its first element is the
    /// program as the entry names it. Empty when the entry has no usable command.
    QStringList command(const QString &entryPath, const QString &document) const;

private:
    QHash<QString, QString> m_values;
};

/// Splits the Exec value of a desktop entry into its words; empty when a quotation does not end.
QStringList splitDesktopCommand(const QString &exec);

} // namespace tarnwell::foundation

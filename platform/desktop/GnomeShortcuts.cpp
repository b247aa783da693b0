#include "desktop/GnomeShortcuts.h"

#include <QStringList>

#undef signals // a word of GLib's, too
#include <gio/gio.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

namespace {

using ports::GlobalShortcutHolder;

constexpr const char *mediaKeys = "org.gnome.settings-daemon.plugins.media-keys";
constexpr const char *customKeys = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding";
constexpr const char *schemas[] = {
    "org.gnome.desktop.wm.keybindings",
    "org.gnome.shell.keybindings",
    "org.gnome.mutter.keybindings",
    "org.gnome.mutter.wayland.keybindings",
    mediaKeys,
};

/// Somebody's thousandth command is not looked at.
constexpr qsizetype maximumCustomKeys = 256;

struct Release
{
    void operator()(GSettings *settings) const { g_object_unref(settings); }
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
    void operator()(GSettingsSchemaKey *key) const { g_settings_schema_key_unref(key); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

Owned<GSettingsSchema> schemaNamed(const char *name)
{
    GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
    return Owned<GSettingsSchema>(source ? g_settings_schema_source_lookup(source, name, TRUE)
                                         : nullptr);
}

/// The texts of a key that holds one or several; empty for any other.
QStringList texts(GSettings *settings, const char *key)
{
    const Owned<GVariant> value(g_settings_get_value(settings, key));
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
        return {QString::fromUtf8(g_variant_get_string(value.get(), nullptr))};
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY))
        return {};
    QStringList result;
    const gsize count = g_variant_n_children(value.get());
    for (gsize i = 0; i < count; ++i) {
        const Owned<GVariant> child(g_variant_get_child_value(value.get(), i));
        result.append(QString::fromUtf8(g_variant_get_string(child.get(), nullptr)));
    }
    return result;
}

bool holds(const QStringList &accelerators, const ports::KeyCombination &combination)
{
    return std::any_of(accelerators.begin(), accelerators.end(), [&](const QString &accelerator) {
        return isAccelerator(accelerator, combination);
    });
}

QString actionOf(GSettingsSchema *schema, const char *name)
{
    const Owned<GSettingsSchemaKey> key(g_settings_schema_get_key(schema, name));
    const char *const summary = g_settings_schema_key_get_summary(key.get());
    return summary ? QString::fromUtf8(summary) : QString::fromUtf8(name).replace(u'-', u' ');
}

std::optional<QString> actionIn(const char *schemaName, const ports::KeyCombination &combination)
{
    const Owned<GSettingsSchema> schema = schemaNamed(schemaName);
    if (!schema || g_settings_schema_get_path(schema.get()) == nullptr)
        return std::nullopt;
    const Owned<GSettings> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> keys(
        g_settings_schema_list_keys(schema.get()), g_strfreev);
    for (gchar **key = keys.get(); *key != nullptr; ++key) {
        if (holds(texts(settings.get(), *key), combination))
            return actionOf(schema.get(), *key);
    }
    return std::nullopt;
}

/// A path that the library takes; it ends the program for others.
bool isSettingsPath(const QString &path)
{
    return path.startsWith(u'/') && path.endsWith(u'/') && !path.contains("//"_L1);
}

/// The user's own commands: each has a place of its own, which a list names.
std::optional<QString> customAction(const ports::KeyCombination &combination)
{
    const Owned<GSettingsSchema> listSchema = schemaNamed(mediaKeys);
    const Owned<GSettingsSchema> schema = schemaNamed(customKeys);
    if (!listSchema || !schema || g_settings_schema_get_path(listSchema.get()) == nullptr ||
        g_settings_schema_get_path(schema.get()) != nullptr ||
        !g_settings_schema_has_key(listSchema.get(), "custom-keybindings") ||
        !g_settings_schema_has_key(schema.get(), "binding") ||
        !g_settings_schema_has_key(schema.get(), "name"))
        return std::nullopt;
    const Owned<GSettings> list(g_settings_new_full(listSchema.get(), nullptr, nullptr));
    const QStringList paths = texts(list.get(), "custom-keybindings").mid(0, maximumCustomKeys);
    for (const QString &path : paths) {
        if (!isSettingsPath(path))
            continue;
        const Owned<GSettings> settings(
            g_settings_new_full(schema.get(), nullptr, path.toUtf8().constData()));
        if (holds(texts(settings.get(), "binding"), combination))
            return texts(settings.get(), "name").value(0);
    }
    return std::nullopt;
}

bool isRunning()
{
    // The settings may be installed, and full of shortcuts, on any other desktop as well.
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    const QStringList relatives{u"GNOME"_s, u"Unity"_s, u"Budgie"_s, u"Pantheon"_s};
    return std::any_of(desktops.begin(), desktops.end(),
                       [&](const QString &desktop) { return relatives.contains(desktop); });
}

} // namespace

std::optional<GlobalShortcutHolder> holderFromGnome(const ports::KeyCombination &combination)
{
    if (!isRunning())
        return std::nullopt;
    for (const char *schema : schemas) {
        if (const auto action = actionIn(schema, combination))
            return GlobalShortcutHolder{*action, QString()};
    }
    if (const auto action = customAction(combination))
        return GlobalShortcutHolder{*action, QString()};
    return std::nullopt;
}

} // namespace tarnwell::desktop

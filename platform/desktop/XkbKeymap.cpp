#include "desktop/XkbKeymap.h"

#include <QStringList>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

XkbContextPointer makeXkbContext()
{
    XkbContextPointer context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    if (context)
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL);
    return context;
}

XkbKeymapPointer compileKeymap(xkb_context *context, const XkbNames &names)
{
    if (context == nullptr)
        return nullptr;
    const QByteArray model = names.model.toUtf8();
    const QByteArray layout = names.layout.toUtf8();
    const QByteArray variant = names.variant.toUtf8();
    const QByteArray options = names.options.toUtf8();
    const xkb_rule_names rules{"evdev", model.constData(), layout.constData(), variant.constData(),
                               options.constData()};
    return XkbKeymapPointer(
        xkb_keymap_new_from_names(context, &rules, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

QString layoutName(const XkbNames &names, xkb_layout_index_t group)
{
    const QString layout = names.layout.split(u',').value(static_cast<qsizetype>(group)).trimmed();
    const QString variant =
        names.variant.split(u',').value(static_cast<qsizetype>(group)).trimmed();
    if (layout.isEmpty())
        return u"us"_s;
    return variant.isEmpty() ? layout : u"%1(%2)"_s.arg(layout, variant);
}

} // namespace tarnwell::desktop

#include "desktop/ShortcutMessages.h"

#include <QDBusArgument>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace tarnwell::desktop {

namespace {

using ports::GlobalShortcutHolder;

constexpr int keysOfASequence = 4;

QDBusMessage withoutStarting(QDBusMessage message)
{
    // A desktop that does not run holds nothing.
    message.setAutoStartService(false);
    return message;
}

QDBusMessage kdeCall(const QString &method)
{
    return withoutStarting(QDBusMessage::createMethodCall(
        u"org.kde.kglobalaccel"_s, u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method));
}

/// The names in one path of the store: whose shortcut, whether the user's own or the default, and
/// the accelerator.
struct XfcePath
{
    QString owner; ///< "commands" or "xfwm4"
    bool isCustom = false;
    QString accelerator;
};

std::optional<XfcePath> xfcePath(const QString &path)
{
    // The accelerator comes last, and may itself hold a slash no more than any key's name does.
    const QStringList parts = path.split(u'/');
    if (parts.size() < 4 || !parts[0].isEmpty())
        return std::nullopt;
    return XfcePath{parts[1], parts[2] == "custom"_L1, parts[3]};
}

} // namespace

QDBusMessage kdeQuestion(int toolkitKey)
{
    return kdeCall(u"getGlobalShortcutsByKey"_s) << toolkitKey;
}

QDBusMessage kdeQuestionOfPlasma6(int toolkitKey)
{
    QDBusArgument sequence;
    sequence.beginStructure();
    sequence.beginArray(QMetaType::fromType<int>());
    for (int i = 0; i < keysOfASequence; ++i)
        sequence << (i == 0 ? toolkitKey : 0);
    sequence.endArray();
    sequence.endStructure();
    QDBusArgument equalOnly;
    equalOnly.beginStructure();
    equalOnly << 0;
    equalOnly.endStructure();
    return kdeCall(u"globalShortcutsByKey"_s)
           << QVariant::fromValue(sequence) << QVariant::fromValue(equalOnly);
}

std::optional<GlobalShortcutHolder> holderFromKde(const QDBusMessage &reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a(ssssssaiai)"_L1)
        return std::nullopt;
    // What is begun has to be ended, also where the rest is not read, or it is never freed.
    const auto list = reply.arguments().constFirst().value<QDBusArgument>();
    QString unique;
    QString friendly;
    QString component;
    QString friendlyComponent;
    list.beginArray();
    const bool isHeld = !list.atEnd();
    if (isHeld) {
        list.beginStructure();
        list >> unique >> friendly >> component >> friendlyComponent;
        list.endStructure();
    }
    list.endArray();
    if (!isHeld)
        return std::nullopt;
    return GlobalShortcutHolder{friendly.isEmpty() ? unique : friendly,
                                friendlyComponent.isEmpty() ? component : friendlyComponent};
}

QDBusMessage xfceQuestion()
{
    return withoutStarting(
               QDBusMessage::createMethodCall(u"org.xfce.Xfconf"_s, u"/org/xfce/Xfconf"_s,
                                              u"org.xfce.Xfconf"_s, u"GetAllProperties"_s))
           << u"xfce4-keyboard-shortcuts"_s << u"/"_s;
}

std::optional<GlobalShortcutHolder> holderFromXfce(const QDBusMessage &reply,
                                                   const ports::KeyCombination &combination)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{sv}"_L1)
        return std::nullopt;
    const auto properties = qdbus_cast<QVariantMap>(reply.arguments().constFirst());
    for (auto entry = properties.cbegin(); entry != properties.cend(); ++entry) {
        const auto path = xfcePath(entry.key());
        const QString action = entry.value().toString();
        if (!path || action.isEmpty() || !isAccelerator(path->accelerator, combination))
            continue;
        // Once the user has changed any shortcut, the defaults count no more.
        if (!path->isCustom && properties.value(u"/%1/custom/override"_s.arg(path->owner)).toBool())
            continue;
        if (path->owner != "xfwm4"_L1)
            return GlobalShortcutHolder{action, QString()};
        QString words = action;
        if (words.endsWith("_key"_L1))
            words.chop(4);
        return GlobalShortcutHolder{words.replace(u'_', u' '), u"Xfwm4"_s};
    }
    return std::nullopt;
}

} // namespace tarnwell::desktop

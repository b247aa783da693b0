#include "desktop/XkbKeyboardLayouts.h"

#include "desktop/XkbLayoutData.h"
#include "desktop/XkbNamesSources.h"
#include "desktop/XkbX11Keyboard.h"
#include "foundation/BoundedFile.h"
#include "foundation/Logging.h"

#include <QGuiApplication>

#include <utility>

namespace tarnwell::desktop {

using namespace Qt::StringLiterals;

namespace {

// Event-modifier bits. The key of the third level is the right Option key of other boards.
constexpr quint32 commandBit = 0x0100;
constexpr quint32 shiftBit = 0x0200;
constexpr quint32 capsLockBit = 0x0400;
constexpr quint32 optionBit = 0x0800;
constexpr quint32 controlBit = 0x1000;
constexpr quint32 rightOptionBit = 0x4000;

constexpr quint32 ansiKeyboard = 40;
constexpr int localePatience = 300; // milliseconds that a start may lose at most
constexpr qint64 maximumFileSize = 64 * 1024;

/// The toolkit's connection to the X server; null on every other platform.
xcb_connection_t *x11Connection()
{
    if (qGuiApp == nullptr)
        return nullptr;
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

} // namespace

ports::InputSource inputSourceFromKeymap(xkb_keymap *keymap, xkb_layout_index_t group,
                                         const QString &name)
{
    return {u"xkb:"_s + name, foundation::unicodeKeyLayoutData(describeKeymap(keymap, group))};
}

XkbKeyboardLayouts::XkbKeyboardLayouts(const QString &root, QObject *parent)
    : ports::KeyboardLayouts(parent)
    , m_root(root)
    , m_context(makeXkbContext())
    , m_localeService(std::make_unique<LocaleService>())
    , m_watcher(std::make_unique<X11KeyboardWatcher>())
{
    connect(m_localeService.get(), &LocaleService::namesChanged, this,
            &XkbKeyboardLayouts::rereadKeyboard);
    connect(m_watcher.get(), &X11KeyboardWatcher::keyboardChanged, this,
            &XkbKeyboardLayouts::rereadKeyboard);
}

XkbKeyboardLayouts::~XkbKeyboardLayouts() = default;

std::optional<ports::InputSource> XkbKeyboardLayouts::currentKeyboardLayout() const
{
    return keyboard().source;
}

quint32 XkbKeyboardLayouts::keyboardType() const
{
    return ansiKeyboard;
}

quint32 XkbKeyboardLayouts::currentKeyModifiers() const
{
    if (xcb_connection_t *connection = x11Connection()) {
        const XkbModifierMasks &masks = keyboard().masks;
        const xkb_mod_mask_t held = readX11Modifiers(connection);
        return (held & masks.super ? commandBit : 0) | (held & masks.shift ? shiftBit : 0) |
               (held & masks.capsLock ? capsLockBit : 0) | (held & masks.alt ? optionBit : 0) |
               (held & masks.control ? controlBit : 0) | (held & masks.level3 ? rightOptionBit : 0);
    }
    const Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
    return (held & Qt::MetaModifier ? commandBit : 0) | (held & Qt::ShiftModifier ? shiftBit : 0) |
           (held & Qt::AltModifier ? optionBit : 0) |
           (held & Qt::ControlModifier ? controlBit : 0) |
           (held & Qt::GroupSwitchModifier ? rightOptionBit : 0);
}

void XkbKeyboardLayouts::catchUp() const
{
    m_watcher->catchUp();
}

const XkbKeyboardLayouts::Keyboard &XkbKeyboardLayouts::keyboard() const
{
    if (!m_keyboard)
        m_keyboard = readKeyboard();
    return *m_keyboard;
}

XkbKeyboardLayouts::Keyboard XkbKeyboardLayouts::readKeyboard() const
{
    const auto describe = [](xkb_keymap *keymap, xkb_layout_index_t group, const QString &name) {
        return Keyboard{inputSourceFromKeymap(keymap, group, name), modifierMasks(keymap)};
    };
    if (xcb_connection_t *connection = x11Connection()) {
        // First the listening, then the reading: no change falls between them.
        m_watcher->start();
        const X11Keyboard x11 = readX11Keyboard(connection, m_context.get());
        if (x11.keymap != nullptr) {
            const char *name = xkb_keymap_layout_get_name(x11.keymap.get(), x11.group);
            return describe(x11.keymap.get(), x11.group, QString::fromUtf8(name));
        }
    }
    XkbNames names = findNames();
    XkbKeymapPointer keymap = compileKeymap(m_context.get(), names);
    if (keymap == nullptr) {
        TARNWELL_SYSTEM_LOG(
            u"No keyboard layout is called %1. Using us."_s.arg(layoutName(names, 0)));
        names = {};
        keymap = compileKeymap(m_context.get(), names);
    }
    if (keymap == nullptr)
        return {};
    return describe(keymap.get(), 0, layoutName(names, 0));
}

XkbNames XkbKeyboardLayouts::findNames() const
{
    if (m_root.isEmpty()) {
        if (const std::optional<XkbNames> names = m_localeService->names(localePatience))
            return *names;
    }
    const auto file =
        foundation::readBoundedFile(m_root + "/etc/default/keyboard"_L1, maximumFileSize);
    return file ? parseKeyboardFile(*file).value_or(XkbNames()) : XkbNames();
}

void XkbKeyboardLayouts::rereadKeyboard()
{
    const std::optional<Keyboard> before = std::exchange(m_keyboard, readKeyboard());
    const auto isSame = [&] {
        if (!before || !before->source || !m_keyboard->source)
            return false;
        return before->source->identifier == m_keyboard->source->identifier &&
               before->source->unicodeKeyLayoutData == m_keyboard->source->unicodeKeyLayoutData;
    };
    // Keyboards also come and go, and modifiers change, without another layout.
    if (!isSame())
        Q_EMIT currentKeyboardLayoutChanged();
}

} // namespace tarnwell::desktop

#include "desktop/XkbKeyboardLayouts.h"

#include "desktop/WaylandKeyboard.h"
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
    , m_seatKeyboard(std::make_unique<WaylandKeyboard>(m_context.get()))
{
    connect(m_localeService.get(), &LocaleService::namesChanged, this,
            &XkbKeyboardLayouts::forgetKeyboard);
    connect(m_watcher.get(), &X11KeyboardWatcher::keyboardChanged, this,
            &XkbKeyboardLayouts::forgetKeyboard);
    connect(m_seatKeyboard.get(), &WaylandKeyboard::keyboardChanged, this,
            &XkbKeyboardLayouts::forgetKeyboard);
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
    // A compositor tells of another layout on the connection that the keys come by, ahead of them.
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
    const auto describeOwn = [&describe](xkb_keymap *keymap, xkb_layout_index_t group) {
        return describe(keymap, group,
                        QString::fromUtf8(xkb_keymap_layout_get_name(keymap, group)));
    };
    if (xcb_connection_t *connection = x11Connection()) {
        // First the listening, then the reading: no change falls between them.
        m_watcher->start();
        const X11Keyboard x11 = readX11Keyboard(connection, m_context.get());
        if (x11.keymap != nullptr)
            return describeOwn(x11.keymap.get(), x11.group);
    }
    m_seatKeyboard->start();
    if (const auto [keymap, group] = m_seatKeyboard->board(); keymap != nullptr)
        return describeOwn(keymap, group);
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

/// Whether both are known and type the same.
bool XkbKeyboardLayouts::isSameLayout(const std::optional<Keyboard> &a,
                                      const std::optional<Keyboard> &b)
{
    return a && b && a->source && b->source && a->source->identifier == b->source->identifier &&
           a->source->unicodeKeyLayoutData == b->source->unicodeKeyLayoutData;
}

/// The next question is answered by what there is now. The change is told later: several that come
/// together are one.
void XkbKeyboardLayouts::forgetKeyboard()
{
    if (!std::exchange(m_isChangeToBeTold, true)) {
        m_keyboardBefore = m_keyboard;
        QMetaObject::invokeMethod(this, &XkbKeyboardLayouts::tellOfChange, Qt::QueuedConnection);
    } else if (m_keyboard && !isSameLayout(m_keyboardBefore, m_keyboard)) {
        // Somebody has seen this one, which is gone again: the one before doesn't count any more.
        m_keyboardBefore.reset();
    }
    m_keyboard.reset();
}

void XkbKeyboardLayouts::tellOfChange()
{
    m_isChangeToBeTold = false;
    const std::optional<Keyboard> before = std::exchange(m_keyboardBefore, std::nullopt);
    // Keyboards also come and go, and modifiers change, without another layout.
    if (!isSameLayout(before, keyboard()))
        Q_EMIT currentKeyboardLayoutChanged();
}

} // namespace tarnwell::desktop

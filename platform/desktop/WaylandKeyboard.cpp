#include "desktop/WaylandKeyboard.h"

#include "desktop/XkbLayoutData.h"

#include <QGuiApplication>
#include <QSignalBlocker>

#include <algorithm>
#include <cstring>
#include <sys/mman.h>
#include <unistd.h>
#include <utility>

namespace tarnwell::desktop {

namespace {

constexpr uint32_t knownSeatVersion = 7;
constexpr uint32_t maximumKeymapSize = 4 * 1024 * 1024; // four groups take a tenth of it

// What doesn't matter here still needs somebody to call.
void ignoreName(void *, wl_seat *, const char *) {}
void ignoreEnter(void *, wl_keyboard *, uint32_t, wl_surface *, wl_array *) {}
void ignoreLeave(void *, wl_keyboard *, uint32_t, wl_surface *) {}
void ignoreKey(void *, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t) {}
void ignoreRepetition(void *, wl_keyboard *, int32_t, int32_t) {}

} // namespace

WaylandKeyboard::WaylandKeyboard(xkb_context *context, QObject *parent)
    : QObject(parent)
    , m_context(context)
{}

WaylandKeyboard::~WaylandKeyboard() = default;

void WaylandKeyboard::start()
{
    wl_display *const display = m_registry || !m_context ? nullptr : toolkitWaylandDisplay();
    const WaylandPointer<wl_event_queue> queue(display ? wl_display_create_queue(display)
                                                       : nullptr);
    if (!queue)
        return;
    m_registry = waylandRegistry(display, queue.get());
    if (!m_registry)
        return;
    // The connection ends with the application.
    connect(qGuiApp, &QObject::destroyed, this, &WaylandKeyboard::stop);
    const QSignalBlocker blocker(this);
    static constexpr wl_registry_listener listener{onGlobal, onGlobalRemoved};
    wl_registry_add_listener(m_registry.get(), &listener, this);
    // Each answer makes the next question possible: what there is, what the seat has, its keymap.
    for (int answers = 0; answers < 3; ++answers)
        wl_display_roundtrip_queue(display, queue.get());
    leaveToToolkit(m_registry.get());
    leaveToToolkit(m_seat.get());
    leaveToToolkit(m_keyboard.get());
    // The toolkit's thread may have put events here while the queue was changed.
    wl_display_dispatch_queue_pending(display, queue.get());
}

void WaylandKeyboard::stop()
{
    m_keyboard.reset();
    m_seat.reset();
    m_registry.reset();
}

void WaylandKeyboard::bindSeat(uint32_t name, uint32_t version)
{
    m_seat.reset(static_cast<wl_seat *>(wl_registry_bind(m_registry.get(), name, &wl_seat_interface,
                                                         std::min(version, knownSeatVersion))));
    m_seatName = name;
    static constexpr wl_seat_listener listener{onCapabilities, ignoreName};
    if (m_seat)
        wl_seat_add_listener(m_seat.get(), &listener, this);
}

void WaylandKeyboard::useKeyboard(bool isThere)
{
    if (isThere == (m_keyboard != nullptr))
        return;
    m_keyboard.reset(isThere ? wl_seat_get_keyboard(m_seat.get()) : nullptr);
    static constexpr wl_keyboard_listener listener{onKeymap,  ignoreEnter, ignoreLeave,
                                                   ignoreKey, onModifiers, ignoreRepetition};
    if (m_keyboard)
        wl_keyboard_add_listener(m_keyboard.get(), &listener, this);
}

void WaylandKeyboard::hearKeymap(const QByteArray &text)
{
    m_toldKeymap = text;
    m_toldGroup.reset();
    m_isNews = true;
    Q_EMIT keyboardChanged();
}

void WaylandKeyboard::hearGroup(xkb_layout_index_t group)
{
    if (group == m_toldGroup)
        return;
    m_toldGroup = group;
    m_isNews = true;
    Q_EMIT keyboardChanged();
}

WaylandKeyboard::Board WaylandKeyboard::board()
{
    if (std::exchange(m_isNews, false)) {
        if (m_toldKeymap != m_keymapText) {
            XkbKeymapPointer keymap(xkb_keymap_new_from_buffer(
                m_context, m_toldKeymap.constData(), size_t(m_toldKeymap.size()),
                XKB_KEYMAP_FORMAT_TEXT_V1, XKB_KEYMAP_COMPILE_NO_FLAGS));
            if (keymap && isKeymapOfBoard(keymap.get())) {
                m_keymap = std::move(keymap);
                m_keymapText = m_toldKeymap;
                m_group = 0;
            }
        }
        if (m_toldKeymap == m_keymapText)
            m_group = m_toldGroup.value_or(m_group);
    }
    return {m_keymap.get(), m_group};
}

void WaylandKeyboard::onGlobal(void *self, wl_registry *, uint32_t name, const char *interface,
                               uint32_t version)
{
    auto *const keyboard = static_cast<WaylandKeyboard *>(self);
    if (!keyboard->m_seat && std::strcmp(interface, wl_seat_interface.name) == 0)
        keyboard->bindSeat(name, version);
}

void WaylandKeyboard::onGlobalRemoved(void *self, wl_registry *, uint32_t name)
{
    auto *const keyboard = static_cast<WaylandKeyboard *>(self);
    if (!keyboard->m_seat || name != keyboard->m_seatName)
        return;
    keyboard->m_keyboard.reset();
    keyboard->m_seat.reset();
}

void WaylandKeyboard::onCapabilities(void *self, wl_seat *, uint32_t capabilities)
{
    static_cast<WaylandKeyboard *>(self)->useKeyboard(
        (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0);
}

void WaylandKeyboard::onKeymap(void *self, wl_keyboard *, uint32_t format, int32_t file,
                               uint32_t size)
{
    const bool isText = format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1 && size <= maximumKeymapSize;
    void *const memory = isText ? mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0) : MAP_FAILED;
    close(file);
    if (memory == MAP_FAILED)
        return;
    const auto *const text = static_cast<const char *>(memory);
    static_cast<WaylandKeyboard *>(self)->hearKeymap({text, qsizetype(strnlen(text, size))});
    munmap(memory, size);
}

void WaylandKeyboard::onModifiers(void *self, wl_keyboard *, uint32_t, uint32_t, uint32_t, uint32_t,
                                  uint32_t group)
{
    static_cast<WaylandKeyboard *>(self)->hearGroup(group);
}

} // namespace tarnwell::desktop

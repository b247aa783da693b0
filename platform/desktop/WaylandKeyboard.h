#pragma once

#include "desktop/WaylandClient.h"
#include "desktop/XkbKeymap.h"

#include <QByteArray>
#include <QObject>

#include <optional>

namespace tarnwell::desktop {

/// The keyboard of a Wayland compositor's seat, heard on the toolkit's connection: compositors tell
/// the group only to the client whose window has the keyboard. Main thread only.
///
/// A keymap that some program made for the keys that it sends is passed over: what counts stays
/// the last one that a board can have.
class WaylandKeyboard : public QObject
{
    Q_OBJECT

public:
    /// Borrows the context, which lives longer.
    explicit WaylandKeyboard(xkb_context *context, QObject *parent = nullptr);
    ~WaylandKeyboard() override;

    /// Begins to listen, unless it has begun. What the seat has by then is known afterwards; the
    /// group is, once a window has had the keyboard. Does nothing where windows are on no such
    /// compositor.
    void start();

    struct Board
    {
        xkb_keymap *keymap = nullptr; ///< null as long as there is none
        xkb_layout_index_t group = 0;
    };
    /// What types now; valid until the next question.
    Board board();

Q_SIGNALS:
    /// The compositor has told of another keymap or group. There may be more to come at once.
    void keyboardChanged();

private:
    void stop();
    void bindSeat(uint32_t name, uint32_t version);
    void useKeyboard(bool isThere);
    void hearKeymap(const QByteArray &text);
    void hearGroup(xkb_layout_index_t group);

    static void onGlobal(void *self, wl_registry *, uint32_t name, const char *interface,
                         uint32_t version);
    static void onGlobalRemoved(void *self, wl_registry *, uint32_t name);
    static void onCapabilities(void *self, wl_seat *, uint32_t capabilities);
    static void onKeymap(void *self, wl_keyboard *, uint32_t format, int32_t file, uint32_t size);
    static void onModifiers(void *self, wl_keyboard *, uint32_t serial, uint32_t depressed,
                            uint32_t latched, uint32_t locked, uint32_t group);

    xkb_context *m_context;
    WaylandPointer<wl_registry> m_registry;
    WaylandPointer<wl_seat> m_seat;
    uint32_t m_seatName = 0;
    WaylandPointer<wl_keyboard> m_keyboard;

    /// What the compositor told last. It is looked at when somebody asks: keyboards that come and
    /// go are announced with keymaps that no key is ever sent with.
    QByteArray m_toldKeymap;
    std::optional<xkb_layout_index_t> m_toldGroup; ///< of that keymap
    bool m_isNews = false;

    QByteArray m_keymapText;
    XkbKeymapPointer m_keymap;
    xkb_layout_index_t m_group = 0;
};

} // namespace tarnwell::desktop

#pragma once

#include "desktop/XkbKeymap.h"

#include <QObject>

#include <memory>

struct xcb_connection_t;

namespace tarnwell::desktop {

/// The keyboard of an X server.
struct X11Keyboard
{
    XkbKeymapPointer keymap;
    xkb_layout_index_t group = 0; ///< the one that types now
};

/// Reads the keyboard; without a keymap when the server has no keyboard extension.
X11Keyboard readX11Keyboard(xcb_connection_t *connection, xkb_context *context);

/// The real modifiers that are down or locked now.
xkb_mod_mask_t readX11Modifiers(xcb_connection_t *connection);

/// Hears of changes to the keyboard of the X server that DISPLAY names, on a connection of its own:
/// the toolkit's connection hands its events to nobody else.
class X11KeyboardWatcher : public QObject
{
    Q_OBJECT

public:
    explicit X11KeyboardWatcher(QObject *parent = nullptr);
    ~X11KeyboardWatcher() override;

    /// Begins to listen, unless it has begun; false when no such server can be reached.
    bool start();

    /// Hears now of everything that has happened by now; nothing when it doesn't listen.
    void catchUp();

Q_SIGNALS:
    /// Another keymap, keyboard or group; once for all that came together.
    void keyboardChanged();

private:
    struct Disconnect
    {
        void operator()(xcb_connection_t *connection) const;
    };

    bool selectEvents();
    void readEvents();

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    quint8 m_firstEvent = 0;
};

} // namespace tarnwell::desktop

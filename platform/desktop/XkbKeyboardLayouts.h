#pragma once

#include "desktop/XkbKeymap.h"
#include "desktop/XkbModifiers.h"
#include "ports/KeyboardLayouts.h"

#include <memory>

namespace tarnwell::desktop {

class LocaleService;
class WaylandKeyboard;
class X11KeyboardWatcher;

/// The input source that one group of a keymap is. Its data is empty only when memory is short.
ports::InputSource inputSourceFromKeymap(xkb_keymap *keymap, xkb_layout_index_t group,
                                         const QString &name);

/// The user's keyboard, as xkb describes it.
///
/// Under X11 it is the server's, under Wayland the compositor's, and followed. Elsewhere its names
/// come from the locale service, else from /etc/default/keyboard; failing both it is a US board.
/// Nothing is asked or read before the first question. Main thread only.
class XkbKeyboardLayouts : public ports::KeyboardLayouts
{
    Q_OBJECT

public:
    /// A root other than the empty one holds the configuration file, and the locale service, which
    /// speaks for the real one, is not asked.
    explicit XkbKeyboardLayouts(const QString &root = {}, QObject *parent = nullptr);
    ~XkbKeyboardLayouts() override;

    std::optional<ports::InputSource> currentKeyboardLayout() const override;
    quint32 keyboardType() const override;
    quint32 currentKeyModifiers() const override;
    void catchUp() const override;

private:
    struct Keyboard
    {
        std::optional<ports::InputSource> source;
        XkbModifierMasks masks;
    };

    static bool isSameLayout(const std::optional<Keyboard> &a, const std::optional<Keyboard> &b);
    const Keyboard &keyboard() const;
    Keyboard readKeyboard() const;
    XkbNames findNames() const;
    void forgetKeyboard();
    void tellOfChange();

    QString m_root;
    XkbContextPointer m_context;
    std::unique_ptr<LocaleService> m_localeService;
    std::unique_ptr<X11KeyboardWatcher> m_watcher;
    std::unique_ptr<WaylandKeyboard> m_seatKeyboard;
    mutable std::optional<Keyboard> m_keyboard; // read at the first question after each change
    std::optional<Keyboard> m_keyboardBefore;   // the one before changes that are still to be told
    bool m_isChangeToBeTold = false;
};

} // namespace tarnwell::desktop

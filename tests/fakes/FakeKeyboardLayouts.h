#pragma once

#include "foundation/KeyCodes.h"
#include "foundation/UnicodeKeyLayoutBuilder.h"
#include "ports/KeyboardLayouts.h"

#include <functional>
#include <map>
#include <utility>

namespace tarnwell::fakes {

/// A keyboard that a test describes: the test turns the controls, the code under test sees port().
/// It starts as a US board without a key held.
class FakeKeyboardLayouts
{
public:
    FakeKeyboardLayouts() { useBoard(QStringLiteral("xkb:us")); }

    ports::KeyboardLayouts &port() { return m_port; }

    /// A US board with some keys changed: by virtual key code, what the key types alone. Shift
    /// types the same in upper case; Command types what the key types alone.
    void useBoard(const QString &identifier, const std::map<quint16, QString> &changes = {})
    {
        std::map<quint16, foundation::KeyLayoutOutput> plain;
        std::map<quint16, foundation::KeyLayoutOutput> shifted;
        for (const foundation::KeyPosition &key : foundation::keyPositions()) {
            if (key.usCharacter != 0) {
                plain[key.virtualKeyCode].text = QChar(key.usCharacter);
                shifted[key.virtualKeyCode].text = QChar(key.usShifted);
            }
        }
        for (const auto &[keyCode, text] : changes) {
            plain[keyCode].text = text;
            shifted[keyCode].text = text.toUpper();
        }
        foundation::KeyLayoutDescription board;
        board.tables = {std::move(plain), std::move(shifted)};
        for (std::size_t state = 0; state < board.tableForModifiers.size(); ++state)
            board.tableForModifiers[state] = (state & 0x22) != 0 && (state & 0x01) == 0 ? 1 : 0;
        useLayoutData(identifier, foundation::unicodeKeyLayoutData(board));
    }

    /// Any bytes, such as damaged ones; empty for an input source without layout data.
    void useLayoutData(const QString &identifier, const QByteArray &data)
    {
        m_port.source = ports::InputSource{identifier, data};
        Q_EMIT m_port.currentKeyboardLayoutChanged();
    }

    /// A desktop without a keyboard layout.
    void useNoLayout()
    {
        m_port.source.reset();
        Q_EMIT m_port.currentKeyboardLayoutChanged();
    }

    /// The keys that are held from now on, in event-modifier bits; 0 releases all.
    void holdModifiers(quint32 bits) { m_port.modifiers = bits; }

    /// What the desktop has still to tell when the code under test catches up with it.
    void onCatchingUp(std::function<void()> news) { m_port.news = std::move(news); }

    /// How often the code under test asked for the layout.
    int layoutRequests() const { return m_port.requests; }

private:
    class Port : public ports::KeyboardLayouts
    {
    public:
        std::optional<ports::InputSource> currentKeyboardLayout() const override
        {
            ++requests;
            return source;
        }
        quint32 keyboardType() const override { return 40; }
        quint32 currentKeyModifiers() const override { return modifiers; }
        void catchUp() const override { news(); }

        std::optional<ports::InputSource> source;
        quint32 modifiers = 0;
        std::function<void()> news = [] {};
        mutable int requests = 0;
    };

    Port m_port;
};

} // namespace tarnwell::fakes

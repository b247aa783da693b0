#include "foundation/UnicodeKeyLayout.h"
#include "shortcuts/KeyTranslation.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

using namespace tarnwell;

namespace {

void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// A keyboard whose layout is the input.
class Keyboard : public ports::KeyboardLayouts
{
public:
    explicit Keyboard(const QByteArray &data)
        : m_source{{}, data}
    {}
    std::optional<ports::InputSource> currentKeyboardLayout() const override { return m_source; }
    quint32 keyboardType() const override { return 40; }
    quint32 currentKeyModifiers() const override { return 0; }

private:
    ports::InputSource m_source;
};

/// Types on the keyboard, letting the dead keys work on one another.
void typeEverything(const QByteArray &data, quint32 options)
{
    constexpr qsizetype room = 16;
    for (const quint32 modifiers : {0, 1, 255}) {
        quint32 state = 0;
        for (quint16 key = 0; key < 132; ++key) {
            const auto typed = foundation::UCKeyTranslate(data, key, foundation::KeyAction::Down,
                                                          modifiers, 40, options, state, room);
            require(!typed || typed->size() <= room, "a text fits its room");
            require(state <= 0xFFFF, "a state has sixteen bits");
            require(options == 0 || state == 0, "no dead keys leave no state");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // A copy of exactly this size, so that a read past its end is seen.
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    typeEverything(bytes, 0);
    typeEverything(bytes, foundation::keyTranslateNoDeadKeys);

    const Keyboard keyboard(bytes);
    const auto layout = foundation::UnicodeKeyLayout::fromBytes(bytes);
    for (const char16_t character : {u'm', u'\u00E9', u'\uFFFF'}) {
        quint16 key = 0;
        const int status = shortcuts::KeyCodeForCharacter(keyboard, {}, character, &key);
        require(status != 0 || layout.has_value(), "a key is found in a layout only");
    }
    for (const quint16 key : {0, 0x2E, 0x7F, 0xFFFF})
        require(shortcuts::LayoutKeyString(keyboard, key).has_value() != bytes.isEmpty(),
                "a layout gives a text");
    return 0;
}

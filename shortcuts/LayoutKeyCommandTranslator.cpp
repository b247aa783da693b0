#include "shortcuts/LayoutKeyCommandTranslator.h"

#include "ports/KeyboardLayouts.h"
#include "shortcuts/KeyTranslation.h"
#include "shortcuts/RecordKeys.h"

namespace tarnwell::shortcuts {

namespace {

constexpr quint32 absent = 0x80000000;

/// A stored number in 32 bits, which is more than the translation reads of it; nothing for a value
/// that is rare enough to be translated each time.
std::optional<quint32> cacheable(const plist::Value &value)
{
    if (value.isNull())
        return absent;
    if (!value.isInteger() || value.toInteger() < -0x7FFFFFFF || value.toInteger() > 0x7FFFFFFF)
        return std::nullopt;
    return static_cast<quint32>(value.toInteger());
}

} // namespace

LayoutKeyCommandTranslator::LayoutKeyCommandTranslator(const ports::KeyboardLayouts &layouts,
                                                       const QString &none)
    : m_layouts(layouts)
    , m_none(none)
{}

void LayoutKeyCommandTranslator::useCurrentLayout()
{
    const auto source = m_layouts.currentKeyboardLayout().value_or(ports::InputSource());
    if (source.identifier == m_layoutIdentifier && source.unicodeKeyLayoutData == m_layoutData)
        return;
    m_layoutIdentifier = source.identifier;
    m_layoutData = source.unicodeKeyLayoutData;
    m_displayed.clear();
}

foundation::StyledString LayoutKeyCommandTranslator::display(const plist::Dictionary &keyCommand)
{
    const auto keyCode = cacheable(keyCommand.value(record::keyCode));
    const auto commandKey = cacheable(keyCommand.value(record::commandKey));
    const auto modifiers = cacheable(keyCommand.value(record::modifiers));
    if (!keyCode || !commandKey || !modifiers)
        return TranslatedStringFromKeyDictionary(m_layouts, keyCommand, m_none);
    const Combination key{*keyCode, *commandKey, *modifiers};
    const auto known = m_displayed.constFind(key);
    if (known != m_displayed.cend())
        return *known;
    return *m_displayed.insert(key,
                               TranslatedStringFromKeyDictionary(m_layouts, keyCommand, m_none));
}

std::optional<QString> LayoutKeyCommandTranslator::fingerprint(const plist::Value &keyCode,
                                                               const plist::Value &commandKey)
{
    return TranslateKey(m_layouts, keyCode, commandKey);
}

} // namespace tarnwell::shortcuts

// The Menu Accelerator's hot key: what is shown of it, and the sheet that takes a new one.

#include "foundation/Logging.h"
#include "hotkey/HotKey.h"
#include "hotkey/LiTextField.h"
#include "hotkey/LiWindow.h"
#include "pane/TarnwellPref.h"
#include "ports/GlobalShortcuts.h"
#include "ports/KeyboardLayouts.h"
#include "ports/Sheets.h"
#include "shortcuts/KeyTranslation.h"

#include <QLabel>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

namespace {

class SheetPane final : public hotkey::HotKeyPane
{
public:
    SheetPane(const TarnwellPref &pane, const ports::Desktop &desktop)
        : m_pane(pane)
        , m_desktop(desktop)
    {}

    hotkey::LiTextField *hotKeyField() const override { return m_pane.hotKeyField(); }
    const ports::KeyboardLayouts &keyboardLayouts() const override
    {
        return m_desktop.keyboardLayouts;
    }
    ports::WindowServer &windowServer() const override { return m_desktop.windowServer; }

private:
    const TarnwellPref &m_pane; // owns the sheet, which shares this
    ports::Desktop m_desktop;
};

} // namespace

void TarnwellPref::setUpHotKeySheet()
{
    hotkeySheet()->setPrefpane(std::make_shared<SheetPane>(*this, m_desktop));
    connect(hotkeySheet(), &hotkey::LiWindow::keyAccepted, this, &TarnwellPref::showRecordedHotKey);
    connect(hotkeySheet(), &hotkey::LiWindow::keyRefused, this, &TarnwellPref::explainRefusedKey);
    connect(&m_desktop.keyboardLayouts, &ports::KeyboardLayouts::currentKeyboardLayoutChanged, this,
            &TarnwellPref::showHotKeyInOtherLayout);
}

void TarnwellPref::setHotKey(QObject *)
{
    m_isHotKeyRecorded = false;
    hotkeyHint()->clear();
    updateMenuAccText(hotKeyField());
    showStoredHotKey(menuAccHotKey()); // it may be a default of just now
    hotKeyField()->setFocus();
    m_desktop.sheets.beginSheet(hotkeySheet(), m_mainView, [this](int returnCode) {
        customSheetDidEnd(hotkeySheet(), returnCode);
    });
}

void TarnwellPref::updateMenuAccText(QWidget *field)
{
    const auto wrapper = preferences();
    if (!hotkey::storedHotKey(*wrapper)) {
        if (const auto byDefault = hotkey::defaultHotKey(m_desktop.keyboardLayouts)) {
            hotkey::storeHotKey(*wrapper, *byDefault);
            wrapper->synchronize();
        }
    }
    if (!showStoredHotKey(field))
        TARNWELL_SYSTEM_LOG(u"Could not set the default hotkey for Menu Accelerator"_s);
}

/// Shows what is stored, and stores nothing; false when there is no whole hot key.
bool TarnwellPref::showStoredHotKey(QWidget *field)
{
    const auto stored = hotkey::storedHotKey(*preferences());
    if (stored)
        showHotKey(field, *stored);
    return stored.has_value();
}

/// Shows the glyphs, and tells a screen reader the words. Changes nothing for a key that can't be
/// shown; returns the words.
QString TarnwellPref::showHotKey(QWidget *field, const hotkey::HotKey &hotKey)
{
    const auto text = hotkey::displayString(m_desktop.keyboardLayouts, hotKey);
    if (!text)
        return {};
    QString words = hotkey::spokenHotKey(hotKey, *text);
    field->setProperty("text", *text);
    if (field == hotKeyField())
        tellInSheet(words);
    else
        field->setAccessibleName(words);
    return words;
}

/// Says something in the line under the field. The field has the focus while keys are recorded,
/// and of the control with the focus a screen reader tells every change of its description.
void TarnwellPref::tellInSheet(const QString &text)
{
    hotkeyHint()->setText(text);
    hotKeyField()->setAccessibleDescription(text);
}

void TarnwellPref::showRecordedHotKey()
{
    m_isHotKeyRecorded = true;
    const auto event = hotkeySheet()->hotKeyEvent();
    if (!event)
        return;
    const auto [keyCode, menuModifiers] = hotkey::hotKeyFor(*event);
    const QString words = showHotKey(hotKeyField(), {keyCode, menuModifiers});
    const auto character = shortcuts::LayoutKeyString(m_desktop.keyboardLayouts, keyCode);
    m_desktop.globalShortcuts.findHolder(
        {keyCode, menuModifiers, character.value_or(QString())},
        [self = QPointer<TarnwellPref>(this), event,
         words](const std::optional<ports::GlobalShortcutHolder> &holder) {
            if (!self || !holder || self->hotkeySheet()->hotKeyEvent() != event)
                return;
            const QString warning =
                holder->owner.isEmpty()
                    ? withTexts(localized("“%@” already has this combination."), {holder->action})
                    : withTexts(localized("“%@” of %@ already has this combination."),
                                {holder->action, holder->owner});
            self->tellInSheet(words + u'\n' + warning);
        });
}

void TarnwellPref::explainRefusedKey(hotkey::Verdict why)
{
    tellInSheet(why == hotkey::Verdict::NotShowable ? localized("This key cannot be the hot key")
                                                    : localized("Add Control, Option or Command"));
}

void TarnwellPref::showHotKeyInOtherLayout()
{
    showStoredHotKey(menuAccHotKey());
    if (!hotkeySheet()->isVisible())
        return;
    const auto event = hotkeySheet()->hotKeyEvent();
    if (!m_isHotKeyRecorded || !event)
        showStoredHotKey(hotKeyField());
    else
        showHotKey(hotKeyField(), hotkey::hotKeyFor(*event));
}

void TarnwellPref::storeHotKey()
{
    const auto event = hotkeySheet()->hotKeyEvent();
    if (!event)
        return;
    const auto wrapper = preferences();
    hotkey::storeHotKey(*wrapper, hotkey::hotKeyFor(*event));
    wrapper->synchronize();
    updateMenuAccText(menuAccHotKey());
}

} // namespace tarnwell::pane

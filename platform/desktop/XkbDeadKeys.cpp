#include "desktop/XkbDeadKeys.h"

#include <xkbcommon/xkbcommon-keysyms.h>

#include <algorithm>
#include <iterator>

namespace tarnwell::desktop {

namespace {

// Composition by Unicode's own rules needs no table of the user's locale, which may be missing;
// only strokes, currencies and Greek letters don't compose that way.
constexpr XkbDeadKey deadKeys[] = {
    {XKB_KEY_dead_grave, u'`', 0x0300, u"", u""},
    {XKB_KEY_dead_acute, u'´', 0x0301, u"", u""},
    {XKB_KEY_dead_circumflex, u'^', 0x0302, u"", u""},
    {XKB_KEY_dead_tilde, u'~', 0x0303, u"", u""},
    {XKB_KEY_dead_macron, u'¯', 0x0304, u"", u""},
    {XKB_KEY_dead_breve, u'˘', 0x0306, u"", u""},
    {XKB_KEY_dead_abovedot, u'˙', 0x0307, u"", u""},
    {XKB_KEY_dead_diaeresis, u'¨', 0x0308, u"", u""},
    {XKB_KEY_dead_abovering, u'˚', 0x030A, u"", u""},
    {XKB_KEY_dead_doubleacute, u'˝', 0x030B, u"", u""},
    {XKB_KEY_dead_caron, u'ˇ', 0x030C, u"", u""},
    {XKB_KEY_dead_cedilla, u'¸', 0x0327, u"", u""},
    {XKB_KEY_dead_ogonek, u'˛', 0x0328, u"", u""},
    {XKB_KEY_dead_iota, 0x037A, 0x0345, u"", u""},
    {XKB_KEY_dead_voiced_sound, 0x309B, 0x3099, u"", u""},
    {XKB_KEY_dead_semivoiced_sound, 0x309C, 0x309A, u"", u""},
    {XKB_KEY_dead_belowdot, 0, 0x0323, u"", u""},
    {XKB_KEY_dead_hook, 0, 0x0309, u"", u""},
    {XKB_KEY_dead_horn, 0, 0x031B, u"", u""},
    {XKB_KEY_dead_stroke, u'/', 0, u"abcdeghijloprtuyz", u"ⱥƀȼđɇǥħɨɉłøᵽɍŧʉɏƶ"},
    {XKB_KEY_dead_abovecomma, 0x1FBF, 0x0313, u"", u""},
    {XKB_KEY_dead_abovereversedcomma, 0x1FFE, 0x0314, u"", u""},
    {XKB_KEY_dead_doublegrave, 0, 0x030F, u"", u""},
    {XKB_KEY_dead_belowring, 0x02F3, 0x0325, u"", u""},
    {XKB_KEY_dead_belowmacron, 0x02CD, 0x0331, u"", u""},
    {XKB_KEY_dead_belowcircumflex, 0, 0x032D, u"", u""},
    {XKB_KEY_dead_belowtilde, 0x02F7, 0x0330, u"", u""},
    {XKB_KEY_dead_belowbreve, 0, 0x032E, u"", u""},
    {XKB_KEY_dead_belowdiaeresis, 0, 0x0324, u"", u""},
    {XKB_KEY_dead_invertedbreve, 0, 0x0311, u"", u""},
    {XKB_KEY_dead_belowcomma, 0, 0x0326, u"", u""},
    {XKB_KEY_dead_currency, u'¤', 0, u"cely", u"¢€£¥"},
    {XKB_KEY_dead_lowline, u'_', 0x0332, u"", u""},
    {XKB_KEY_dead_aboveverticalline, 0x02C8, 0x030D, u"", u""},
    {XKB_KEY_dead_belowverticalline, 0x02CC, 0x0329, u"", u""},
    {XKB_KEY_dead_longsolidusoverlay, u'/', 0x0338, u"", u""},
    {XKB_KEY_dead_a, u'a', 0, u"", u""},
    {XKB_KEY_dead_A, u'A', 0, u"", u""},
    {XKB_KEY_dead_e, u'e', 0, u"", u""},
    {XKB_KEY_dead_E, u'E', 0, u"", u""},
    {XKB_KEY_dead_i, u'i', 0, u"", u""},
    {XKB_KEY_dead_I, u'I', 0, u"", u""},
    {XKB_KEY_dead_o, u'o', 0, u"", u""},
    {XKB_KEY_dead_O, u'O', 0, u"", u""},
    {XKB_KEY_dead_u, u'u', 0, u"", u""},
    {XKB_KEY_dead_U, u'U', 0, u"", u""},
    {XKB_KEY_dead_small_schwa, u'ə', 0, u"", u""},
    {XKB_KEY_dead_capital_schwa, u'Ə', 0, u"", u""},
    {XKB_KEY_dead_greek, u'µ', 0, u"abdefghijklmnopqrstuwxyz", u"αβδεφγηιθκλµνοπχρστυωξψζ"},
};

} // namespace

const XkbDeadKey *xkbDeadKey(xkb_keysym_t keysym)
{
    const auto deadKey = std::ranges::find(deadKeys, keysym, &XkbDeadKey::keysym);
    return deadKey == std::end(deadKeys) ? nullptr : deadKey;
}

QString spacingText(const XkbDeadKey &deadKey)
{
    if (deadKey.spacing != 0)
        return QString(QChar(deadKey.spacing));
    return QString(QChar(u'\u25CC')) + QChar(deadKey.combining);
}

QString combine(const XkbDeadKey &deadKey, const QString &text)
{
    if (text == QLatin1Char(' '))
        return spacingText(deadKey);
    if (text.size() != 1 || !text.front().isLetter())
        return {};
    const QChar letter = text.front();
    const qsizetype place = QStringView(deadKey.letters).indexOf(letter.toLower());
    if (place >= 0) {
        const QChar combined = deadKey.combinations[place];
        return letter.isUpper() ? QString(combined.toUpper()) : QString(combined);
    }
    if (deadKey.combining == 0)
        return {};
    const QString combined =
        QString(text + QChar(deadKey.combining)).normalized(QString::NormalizationForm_C);
    return combined.size() == 1 ? combined : QString();
}

} // namespace tarnwell::desktop

#include "host/ColorScheme.h"

#include <QApplication>
#include <QStyle>

namespace tarnwell::host {

namespace {

struct PaletteEntry
{
    QPalette::ColorRole role;
    QRgb enabled;
    QRgb disabled;
};

constexpr PaletteEntry darkEntries[] = {
    {QPalette::Window, 0xff323439, 0xff323439},
    {QPalette::WindowText, 0xffe8e9eb, 0xff8a8d93},
    {QPalette::Base, 0xff1c1d20, 0xff2b2d31},
    {QPalette::AlternateBase, 0xff242629, 0xff2b2d31},
    {QPalette::Text, 0xffe8e9eb, 0xff8a8d93},
    {QPalette::PlaceholderText, 0xff9a9da3, 0xff74777d},
    {QPalette::Button, 0xff313338, 0xff2d2f33},
    {QPalette::ButtonText, 0xffe8e9eb, 0xff8a8d93},
    {QPalette::BrightText, 0xffffffff, 0xffffffff},
    {QPalette::ToolTipBase, 0xff3a3d42, 0xff3a3d42},
    {QPalette::ToolTipText, 0xffe8e9eb, 0xffe8e9eb},
    {QPalette::Highlight, 0xff2a6fb0, 0xff45484e},
    {QPalette::HighlightedText, 0xffffffff, 0xffc4c6ca},
    {QPalette::Link, 0xff6cb4f5, 0xff8a8d93},
    {QPalette::LinkVisited, 0xffb89af0, 0xff8a8d93},
    {QPalette::Light, 0xff53575e, 0xff53575e},
    {QPalette::Midlight, 0xff45484e, 0xff45484e},
    {QPalette::Mid, 0xff25272a, 0xff25272a},
    {QPalette::Dark, 0xff191a1c, 0xff191a1c},
    {QPalette::Shadow, 0xff0c0d0e, 0xff0c0d0e},
};

} // namespace

QPalette lightPalette()
{
    return QApplication::style()->standardPalette();
}

QPalette darkPalette()
{
    QPalette palette;
    for (const PaletteEntry &entry : darkEntries) {
        palette.setColor(QPalette::Active, entry.role, QColor::fromRgb(entry.enabled));
        palette.setColor(QPalette::Inactive, entry.role, QColor::fromRgb(entry.enabled));
        palette.setColor(QPalette::Disabled, entry.role, QColor::fromRgb(entry.disabled));
    }
    return palette;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

void applyColorScheme(ColorScheme scheme)
{
    switch (scheme) {
    case ColorScheme::AsDesktop:
        QApplication::setPalette(QPalette());
        break;
    case ColorScheme::Light:
        QApplication::setPalette(lightPalette());
        break;
    case ColorScheme::Dark:
        QApplication::setPalette(darkPalette());
        break;
    }
}

} // namespace tarnwell::host

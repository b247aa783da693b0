#include "host/ColorScheme.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace tarnwell::host;

namespace {

qreal relativeLuminance(const QColor &color)
{
    const auto linear = [](qreal value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

qreal contrast(const QColor &a, const QColor &b)
{
    const auto lighter = std::max(relativeLuminance(a), relativeLuminance(b));
    const auto darker = std::min(relativeLuminance(a), relativeLuminance(b));
    return (lighter + 0.05) / (darker + 0.05);
}

struct Pair
{
    const char *name;
    QPalette::ColorRole text;
    QPalette::ColorRole background;
};

const Pair pairs[] = {
    {"labels", QPalette::WindowText, QPalette::Window},
    {"rows", QPalette::Text, QPalette::Base},
    {"every other row", QPalette::Text, QPalette::AlternateBase},
    {"buttons", QPalette::ButtonText, QPalette::Button},
    {"selected rows", QPalette::HighlightedText, QPalette::Highlight},
    {"placeholders", QPalette::PlaceholderText, QPalette::Base},
    {"links", QPalette::Link, QPalette::Base},
    {"tool tips", QPalette::ToolTipText, QPalette::ToolTipBase},
};

} // namespace

TEST(ColorScheme, DarkTextsAreLegibleEverywhere)
{
    const QPalette palette = darkPalette();
    for (const Pair &pair : pairs) {
        EXPECT_GE(contrast(palette.color(pair.text), palette.color(pair.background)), 4.5)
            << pair.name;
    }
}

TEST(ColorScheme, TellsDarkFromLight)
{
    EXPECT_TRUE(isDark(darkPalette()));
    EXPECT_FALSE(isDark(lightPalette()));
}

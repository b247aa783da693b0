#include "compositions/model/Composition.h"
#include "compositions/model/Structure.h"
#include "effects/EffectInformation.h"
#include "effects/FramePacing.h"
#include "effects/SampleMenu.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

TEST(EffectInformation, LinksToWebAddressesAndShowsOtherTextsPlainly)
{
    struct Row
    {
        const char *name;
        QString description;
        QString text;
        bool isLink = false;
        QString toolTip = {};
    };
    const Row rows[] = {
        {"none", {}, {}},
        {"address", u"http://www.example.com/a?b=1#c"_s, u"www.example.com"_s, true,
         u"http://www.example.com/a?b=1#c"_s},
        {"port and line end", u"https://user@example.com:8443\n"_s, u"example.com"_s, true,
         u"https://user@example.com:8443"_s},
        {"international", u"http://bücher.de/"_s, u"bücher.de"_s, true, u"http://bücher.de/"_s},
        {"no host", u"mailto:me@example.com"_s, u"mailto:me@example.com"_s},
        {"empty host", u"http:///path"_s, u"http:///path"_s},
        {"blank within", u"http://example.com/a b"_s, u"http://example.com/a b"_s},
        {"another program", u"file://server/run.desktop"_s, u"file://server/run.desktop"_s},
        {"prose", u"See http://example.com for <more>, 1 < 2."_s,
         u"See http://example.com for <more>, 1 < 2."_s},
        {"page", u"<img src=\"x\"/><p>A &lt;b&gt;<br>end</p>"_s,
         u"<img src=\"x\"/><p>A &lt;b&gt;<br>end</p>"_s},
        {"lines", u"One,  two\r\n\n\tthree\u2028four\n"_s, u"One,  two\n\n three\nfour"_s},
        {"turned around", u"\u202egnihton"_s, u"[U+202E]gnihton"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        compositions::Composition composition;
        composition.description = row.description;
        const EffectInformation information = effectInformation(composition, u"file.qtz"_s);
        EXPECT_EQ(information.linkText, row.text);
        EXPECT_EQ(information.linkToolTip, row.toolTip);
        EXPECT_EQ(information.link, row.isLink ? QUrl(row.description.trimmed()) : QUrl());
    }
}

TEST(EffectInformation, FitsIntoItsLabelsWhateverTheFileHolds)
{
    const QString text = u"word "_s.repeated(200'000);
    const QString lines = u"line\n"_s.repeated(200'000);
    for (const QString &much : {text, lines, u"http://example.com/"_s + u"x"_s.repeated(500'000),
                                u"<b>"_s.repeated(300'000), u"<"_s.repeated(300'000)}) {
        compositions::Composition composition;
        composition.name = composition.copyright = composition.description = much;
        const EffectInformation information = effectInformation(composition, {});
        EXPECT_LE(information.name.size(), 80);
        EXPECT_LE(information.author.size(), 80);
        EXPECT_FALSE((information.name + information.author).contains(u'\n'));
        EXPECT_LE(information.linkText.size(), 240);
        EXPECT_LE(information.linkText.count(u'\n'), 4);
        EXPECT_LE(information.linkToolTip.size(), 2000);
        EXPECT_TRUE(information.link.isEmpty());
    }
}

TEST(SampleMenu, IsWhatThePluginTellsOfAMenu)
{
    const auto inputs = sampleMenuInputs();
    ASSERT_EQ(inputs.size(), 2U);
    EXPECT_EQ(inputs[0].first, u"SelectedMenuItem"_s);
    EXPECT_FALSE(inputs[0].second.toString().isEmpty());
    EXPECT_EQ(inputs[1].first, u"MenuItems"_s);
    const auto menu = inputs[1].second.toStructure();
    ASSERT_TRUE(menu);
    EXPECT_EQ(menu->members().front().toString(), u"Undo"_s);
}

TEST(FramePacing, CatchesUpWhenFramesAreFastAgain)
{
    FramePacing pacing;
    pacing.frameTook(2.0);
    EXPECT_DOUBLE_EQ(pacing.interval(), 1.0 / 60.0) << "the first frame counts for nothing";
    for (const double seconds : {0.05, 0.01}) {
        for (int i = 0; i < 30; ++i)
            pacing.frameTook(seconds);
    }
    EXPECT_DOUBLE_EQ(pacing.interval(), 1.0 / 60.0);
}

TEST(FramePacing, LetsTimeStandStillWhereNobodyLooks)
{
    EXPECT_DOUBLE_EQ(FramePacing::timeStep(0.25), 0.25);
    EXPECT_DOUBLE_EQ(FramePacing::timeStep(3600.0), 1.0);
    EXPECT_DOUBLE_EQ(FramePacing::timeStep(-5.0), 0.0) << "the clock was set back";
}

} // namespace tarnwell::effects

#include "host/Options.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace tarnwell::host;

TEST(Options, TakesValuesInBothForms)
{
    const Options options =
        parseOptions({u"--home"_s, u"/h"_s, u"--root=/r=1"_s, u"--demo"_s, u"--pane=p"_s,
                      u"--shots"_s, u"s"_s, u"--color-scheme=dark"_s});
    EXPECT_EQ(options.home, u"/h"_s);
    EXPECT_EQ(options.root, u"/r=1"_s);
    EXPECT_EQ(options.pane, u"p"_s);
    EXPECT_EQ(options.shots, u"s"_s);
    EXPECT_EQ(options.colorScheme, ColorScheme::Dark);
    EXPECT_TRUE(options.demo);
    EXPECT_TRUE(options.error.isEmpty());
}

TEST(Options, LeavesToTheToolkitWhatLooksLikeItsOwn)
{
    const Options options = parseOptions({u"-session"_s, u"7"_s, u"--demo"_s, u"-reverse"_s,
                                          u"-platform"_s, u"wayland;xcb"_s, u"--home=h"_s});
    EXPECT_TRUE(options.error.isEmpty()) << qPrintable(options.error);
    EXPECT_TRUE(options.demo);
    EXPECT_EQ(options.home, u"h"_s);
    EXPECT_EQ(options.platform, u"wayland;xcb"_s);
}

TEST(Options, NamesWhatIsWrong)
{
    struct Row
    {
        const char *name;
        QStringList arguments;
        QString error;
    };
    const Row rows[] = {
        {"unknown", {u"--shot"_s}, u"--shot is not an option of this program."_s},
        {"no value", {u"--pane"_s}, u"--pane needs a value."_s},
        {"empty value", {u"--home="_s}, u"--home needs a value."_s},
        {"an option for a value",
         {u"--home"_s, u"--demo"_s},
         u"--home needs a value, and --demo is none."_s},
        {"stray word", {u"pane"_s}, u"pane is not an option of this program."_s},
        {"scheme", {u"--color-scheme"_s, u"blue"_s}, u"--color-scheme is light or dark."_s},
        {"flag with a value", {u"--demo=1"_s}, u"--demo=1 is not an option of this program."_s},
    };
    for (const Row &row : rows)
        EXPECT_EQ(parseOptions(row.arguments).error, row.error) << row.name;
}

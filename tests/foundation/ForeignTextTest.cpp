#include "foundation/ForeignText.h"

#include <gtest/gtest.h>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

TEST(ForeignText, ShowsAndLogsOneHonestLine)
{
    const struct
    {
        const char *name;
        QString text;
        QString shown;
        QString logged;
    } rows[] = {
        {"plain", u"Find…\\n Größe 50 %"_s, u"Find…\\n Größe 50 %"_s, u"Find…\\n Größe 50 %"_s},
        {"line breaks", u"a\r\nb\u2028c\td"_s, u"a␍␊b[U+2028]c␉d"_s, u"a\\r\\nb\\u{2028}c\\td"_s},
        {"terminal", u"\x1b[31m\x7f\u009b"_s, u"␛[31m␡[U+009B]"_s,
         u"\\u{001B}[31m\\u{007F}\\u{009B}"_s},
        {"turned around", u"fifo\u202egpj.exe"_s, u"fifo[U+202E]gpj.exe"_s,
         u"fifo\\u{202E}gpj.exe"_s},
        {"invisible", u"a\u200bb\ufeff\u3164"_s, u"a[U+200B]b[U+FEFF][U+3164]"_s,
         u"a\\u{200B}b\\u{FEFF}\\u{3164}"_s},
        {"joiners and emoji", u"می\u200cخواهم 👩\u200d🚀"_s, u"می\u200cخواهم 👩\u200d🚀"_s,
         u"می\u200cخواهم 👩\u200d🚀"_s},
        {"half a character", u"a"_s + QChar(0xD800), u"a[U+D800]"_s, u"a\\u{D800}"_s},
    };
    for (const auto &row : rows) {
        EXPECT_EQ(shownText(row.text), row.shown) << row.name;
        EXPECT_EQ(loggedText(row.text), row.logged) << row.name;
        EXPECT_EQ(loggedText(row.logged), row.logged) << row.name;
    }
}

TEST(ForeignText, BoundsWhatIsLong)
{
    EXPECT_EQ(shownText(u"abcdefghij"_s, 10), u"abcdefghij"_s);
    EXPECT_EQ(shownText(u"abcdefghijk"_s, 10), u"abcde…hijk"_s);
    EXPECT_EQ(shownText(u"😀😀😀😀"_s, 6), u"😀…😀"_s);
    EXPECT_EQ(shownText(QString(300, u'\n'), 5), u"␊␊…␊␊"_s);
    EXPECT_EQ(shownLines(u"a\r\n\tb\u2028c\u202e"_s, 40, 3), u"a\n b\nc[U+202E]"_s);
    EXPECT_EQ(shownLines(u"a\nb\nc\n"_s, 40, 2), u"a\nb…"_s);
    EXPECT_EQ(shownLines(u"abcdefghijk"_s, 10, 2), u"abcdefghi…"_s);
    EXPECT_EQ(shownLines(u"abcd"_s + QString(50, u'\x01'), 10, 2), u"abcd␁␁␁␁␁…"_s);
    EXPECT_EQ(shownLines(u"😀😀😀"_s, 4, 2), u"😀…"_s);
    const QString logged = loggedText(QString(100'000, u'\u202e') + u'x', 100);
    EXPECT_LE(logged.size(), 100);
    EXPECT_TRUE(logged.endsWith(u'x'));
    EXPECT_EQ(loggedText(QString(3000, u'y'), 60).size(), 60);
    EXPECT_TRUE(loggedText(QString(3000, u'y'), 60).contains(u"3000 characters"));
}

} // namespace tarnwell::foundation

#include "pane/VersionText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tarnwell::pane {

TEST(VersionText, ShowsTheBuildOfPrereleases)
{
    struct Row
    {
        const char *name;
        std::optional<QString> version;
        std::optional<QString> build;
        QString label;
        QString toolTip;
    };
    const Row rows[] = {
        {"no version", std::nullopt, u"456"_s, u""_s, u""_s},
        {"beta", u"1.2b3"_s, u"456"_s, u"1.2b3 (456)"_s, u"1.2b3 (Build 456)"_s},
        {"final candidate", u"1.2fc1"_s, u"9"_s, u"1.2fc1 (9)"_s, u"1.2fc1 (Build 9)"_s},
        {"release", u"1.2"_s, u"456"_s, u"1.2"_s, u"1.2 (Build 456)"_s},
        {"an e is no mark", u"1.2e1"_s, u"456"_s, u"1.2e1"_s, u"1.2e1 (Build 456)"_s},
        {"capitals are no mark", u"1.2B3"_s, u"456"_s, u"1.2B3"_s, u"1.2B3 (Build 456)"_s},
        {"beta without a build", u"1.2b3"_s, std::nullopt, u"1.2b3"_s, u"1.2b3"_s},
        {"placeholder in the version", u"%2a"_s, u"7"_s, u"%2a (7)"_s, u"%2a (Build 7)"_s},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const VersionText text = versionText(row.version, row.build);
        EXPECT_EQ(text.label, row.label);
        EXPECT_EQ(text.toolTip, row.toolTip);
    }
}

} // namespace tarnwell::pane

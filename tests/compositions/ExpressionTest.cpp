#include "compositions/expression/Expression.h"

#include <gtest/gtest.h>

namespace tarnwell::compositions {
namespace {

using namespace Qt::StringLiterals;

struct Row
{
    const char *name;
    QString text;
    std::vector<double> values;
    double result;
};

void PrintTo(const Row &row, std::ostream *stream)
{
    *stream << row.name;
}

class ExpressionResult : public testing::TestWithParam<Row>
{};

TEST_P(ExpressionResult, IsRight)
{
    QString error;
    const auto expression = Expression::compile(GetParam().text, &error);
    ASSERT_TRUE(expression) << error.toStdString();
    EXPECT_NEAR(expression->evaluate(GetParam().values), GetParam().result, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ExpressionResult,
    testing::Values(
        Row{"precedence", u"2+3*4"_s, {}, 14}, Row{"fromTheLeft", u"10-4-3"_s, {}, 3},
        Row{"parentheses", u"(2+3)*4"_s, {}, 20}, Row{"powerFromTheRight", u"2^3^2"_s, {}, 512},
        Row{"powerBeforeSign", u"-2^2"_s, {}, -4}, Row{"signInPower", u"2^-1"_s, {}, 0.5},
        Row{"remainder", u"7%4"_s, {}, 3}, Row{"byZero", u"5/0+1"_s, {}, 1},
        Row{"remainderByZero", u"5%0"_s, {}, 0},
        Row{"comparison", u"(1<2)+(2<=2)+(3>2)+(2>=3)"_s, {}, 3},
        Row{"equality", u"(1==1)+(1!=1)"_s, {}, 1}, Row{"logic", u"1&&0||!0"_s, {}, 1},
        Row{"choice", u"a>1 ? 10 : a>0 ? 20 : 30"_s, {0.5}, 20},
        Row{"variablesInOrder", u"b-a"_s, {5, 3}, 2}, Row{"lineBreaks", u"a\n +\r\n1"_s, {1}, 2},
        Row{"degrees", u"sin(90)+cos(180)"_s, {}, 0},
        Row{"arcInDegrees", u"atan2(1,1)+asin(1)"_s, {}, 135},
        Row{"many", u"max(1,5,3)+min(4,2)"_s, {}, 7},
        Row{"logarithms", u"ln(exp(2))+log(100)"_s, {}, 4}, Row{"notFinite", u"sqrt(0-1)"_s, {}, 0},
        Row{"exponent", u"1.5e2+.5"_s, {}, 150.5}, Row{"nameLikeFunction", u"sin+1"_s, {2}, 3},
        Row{"notBeforeNotEqual", u"!a!=b"_s, {0, 0}, 1}),
    [](const auto &row) { return row.param.name; });

TEST(Expression, NamesItsVariablesOnce)
{
    const auto expression = Expression::compile(u"b*a + b - sin(c)");
    ASSERT_TRUE(expression);
    EXPECT_EQ(expression->variables(), (QStringList{u"b"_s, u"a"_s, u"c"_s}));
}

TEST(Expression, RejectsWhatIsNone)
{
    for (const auto &text : {u""_s, u"1+"_s, u"(1"_s, u"1)"_s, u"a b"_s, u"1 ? 2"_s, u"nosuch(1)"_s,
                             u"sin()"_s, u"sin(1,2)"_s, u"1..2"_s, u"#"_s, u","_s, u"max(1,)"_s}) {
        QString error;
        EXPECT_FALSE(Expression::compile(text, &error)) << text.toStdString();
        EXPECT_FALSE(error.isEmpty()) << text.toStdString();
    }
}

TEST(Expression, SurvivesDepthAndLength)
{
    const QString deep = QString(100'000, u'(') + u"1"_s;
    EXPECT_FALSE(Expression::compile(QStringView(deep).left(60'000)));
    EXPECT_FALSE(Expression::compile(deep));
    EXPECT_FALSE(Expression::compile(QString(50'000, u'-') + u"1"_s));
    // Long but flat is fine.
    const auto sum = Expression::compile(QString(u"1+"_s).repeated(10'000) + u"1"_s);
    ASSERT_TRUE(sum);
    EXPECT_EQ(sum->evaluate({}), 10'001);
}

TEST(Expression, RandomNumbersDependOnTheSeedAlone)
{
    const auto expression = Expression::compile(u"rand()*1000");
    ASSERT_TRUE(expression);
    EXPECT_EQ(expression->evaluate({}, 7), expression->evaluate({}, 7));
    EXPECT_NE(expression->evaluate({}, 7), expression->evaluate({}, 8));
}

} // namespace
} // namespace tarnwell::compositions

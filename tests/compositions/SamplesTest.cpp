#include "compositions/evaluator/Report.h"
#include "compositions/model/Structure.h"
#include "compositions/opengl/OffscreenDestination.h"
#include "compositions/reader/CompositionReader.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <gtest/gtest.h>

#include <set>

namespace tarnwell::compositions::test {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize size(160, 100);
const QString titleKey = u"SelectedMenuItem"_s;
const QString itemsKey = u"MenuItems"_s;

QStringList samples()
{
    return QDir(QStringLiteral(SAMPLE_COMPOSITIONS)).entryList({u"*.qtz"_s}, QDir::Files);
}

std::shared_ptr<const Composition> read(const QString &name)
{
    QFile file(QDir(QStringLiteral(SAMPLE_COMPOSITIONS)).filePath(name));
    return file.open(QIODevice::ReadOnly) ? readComposition(file.readAll()) : nullptr;
}

std::vector<std::string> sampleNames()
{
    std::vector<std::string> names;
    for (const QString &name : samples()) {
        names.push_back(name.chopped(4).toStdString());
    }
    return names;
}

class Sample : public testing::TestWithParam<std::string>
{
protected:
    void SetUp() override
    {
        m_composition = read(QString::fromStdString(GetParam()) + u".qtz"_s);
        ASSERT_TRUE(m_composition);
        m_evaluator = std::make_unique<Evaluator>(m_composition);
    }

    void makeDestination()
    {
        QString error;
        m_destination = OffscreenDestination::create(size, &error);
        if (!m_destination) {
            GTEST_SKIP() << error.toStdString();
        }
    }

    QImage drawAt(double time)
    {
        m_destination->draw(
            m_evaluator->evaluate({.time = time, .systemTime = 0.0, .pixels = size}));
        EXPECT_FALSE(m_evaluator->isExhausted());
        return m_destination->picture();
    }

    std::shared_ptr<const Composition> m_composition;
    std::unique_ptr<Evaluator> m_evaluator;
    std::unique_ptr<OffscreenDestination> m_destination;
};

/// Pixels that differ so much that an eye notices.
int difference(const QImage &a, const QImage &b)
{
    constexpr int noticeable = 30;
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QColor left = a.pixelColor(x, y);
            const QColor right = b.pixelColor(x, y);
            count += std::abs(left.red() - right.red()) + std::abs(left.green() - right.green()) +
                                 std::abs(left.blue() - right.blue()) >
                             noticeable
                         ? 1
                         : 0;
        }
    }
    return count;
}

TEST_P(Sample, SaysWhoseItIsAndNeedsNothingThatIsMissing)
{
    EXPECT_FALSE(m_composition->name.isEmpty());
    EXPECT_TRUE(m_composition->copyright.contains(u"Varnit"_s));
    EXPECT_FALSE(QUrl(m_composition->description).host().isEmpty());
    EXPECT_EQ(m_composition->findings, QStringList());
    EXPECT_EQ(m_evaluator->network().findings, QStringList());
    EXPECT_TRUE(findUnsupportedClasses(m_evaluator->network()).empty());
}

TEST_P(Sample, ShowsSomethingThatMoves)
{
    makeDestination();
    if (IsSkipped()) {
        return;
    }
    QImage first;
    for (const double time : {0.4, 1.7, 3.4, 8.6}) {
        const QImage picture = drawAt(time);
        std::set<QRgb> colors;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                colors.insert(picture.pixel(x, y));
            }
        }
        EXPECT_GT(colors.size(), 20U) << time;
        if (first.isNull()) {
            first = picture;
        } else {
            EXPECT_GT(difference(picture, first), 40) << time;
        }
    }
}

TEST_P(Sample, ShowsTheMenuThatItIsGiven)
{
    makeDestination();
    if (IsSkipped()) {
        return;
    }
    constexpr double time = 3.4; // by then every title can be read
    for (int i = 0; i < 50; ++i) {
        drawAt(time * i / 50);
    }
    const QImage before = drawAt(time);
    if (m_evaluator->hasInput(titleKey)) {
        EXPECT_EQ(m_evaluator->inputType(titleKey), PortType::String);
        m_evaluator->setInput(titleKey, u"Quit"_s);
        EXPECT_GT(difference(drawAt(time), before), 100);
    }
    if (m_evaluator->hasInput(itemsKey)) {
        EXPECT_EQ(m_evaluator->inputType(itemsKey), PortType::Structure);
        const QImage titled = drawAt(time);
        m_evaluator->setInput(itemsKey,
                              Structure::list({Value(u"Bold"_s), Value(u"-"_s), Value(u"Wide"_s)}));
        EXPECT_GT(difference(drawAt(time), titled), 100);
        // A menu without items, and a title without letters, are no reason to fail.
        m_evaluator->setInput(itemsKey, Structure::list({}));
        m_evaluator->setInput(titleKey, QString());
        drawAt(time);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Sample, testing::ValuesIn(sampleNames()),
                         [](const auto &sample) { return sample.param; });

TEST(Samples, MostShowTheMenu)
{
    EXPECT_GE(samples().size(), 8);
    int titled = 0;
    int listing = 0;
    for (const QString &name : samples()) {
        const auto composition = read(name);
        ASSERT_TRUE(composition) << name.toStdString();
        const Evaluator evaluator(composition);
        titled += evaluator.hasInput(titleKey) ? 1 : 0;
        listing += evaluator.hasInput(itemsKey) ? 1 : 0;
    }
    EXPECT_GE(titled, 5);
    EXPECT_GE(listing, 4);
}

} // namespace
} // namespace tarnwell::compositions::test

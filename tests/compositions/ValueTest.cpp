#include "compositions/model/Value.h"
#include "compositions/Limits.h"
#include "compositions/model/Image.h"
#include "compositions/model/Structure.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include <cmath>

namespace tarnwell::compositions {
namespace {

using namespace Qt::StringLiterals;

TEST(Value, ConvertsAsWiresDo)
{
    struct Row
    {
        Value value;
        double number;
        qint64 index;
        bool boolean;
        QString text;
    };
    for (const Row &row : {Row{2.75, 2.75, 2, true, u"2.75"_s},
                           {-3.5, -3.5, 0, true, u"-3.5"_s},
                           {0.0, 0, 0, false, u"0"_s},
                           {true, 1, 1, true, u"1"_s},
                           {Value::index(7), 7, 7, true, u"7"_s},
                           {u" 12.5 "_s, 12.5, 12, true, u" 12.5 "_s},
                           {u"yes"_s, 0, 0, true, u"yes"_s},
                           {u"word"_s, 0, 0, false, u"word"_s},
                           {Value(), 0, 0, false, u""_s}}) {
        EXPECT_EQ(row.value.toNumber(), row.number) << row.text.toStdString();
        EXPECT_EQ(row.value.toIndex(), row.index) << row.text.toStdString();
        EXPECT_EQ(row.value.toBoolean(), row.boolean) << row.text.toStdString();
        EXPECT_EQ(row.value.toString(), row.text);
    }
}

TEST(Value, SurvivesNumbersAtTheEdge)
{
    EXPECT_EQ(Value(std::nan("")).toIndex(), 0);
    EXPECT_FALSE(Value(std::nan("")).toBoolean());
    EXPECT_GT(Value(1e300).toIndex(), 1'000'000'000'000);
    EXPECT_EQ(Value(-1e300).toIndex(), 0);
    EXPECT_GT(Value(Index{~0ULL}).toIndex(), 0);
}

TEST(Value, ComparesByWhatItHolds)
{
    const auto list = [](double last) { return Value(Structure::list({1.0, u"a"_s, last})); };
    EXPECT_EQ(Value(1.0), Value(true));
    EXPECT_EQ(Value(Value::index(3)), Value(3.0));
    EXPECT_EQ(list(2.0), list(2.0));
    EXPECT_FALSE(list(2.0) == list(3.0));
    EXPECT_FALSE(Value(u"1"_s) == Value(1.0));
    EXPECT_EQ(Value(), Value());
}

TEST(Value, MakesAColorAnEndlessImage)
{
    const ImageRef image = Value(Color{1, 0, 0, 1}).toImage();
    ASSERT_TRUE(image);
    EXPECT_EQ(image->kind(), Image::Kind::Constant);
    EXPECT_FALSE(Value(1.0).toImage());
}

TEST(Value, KnowsThePortClasses)
{
    EXPECT_EQ(portTypeOfClass(u"QCNumberPort"), PortType::Number);
    EXPECT_EQ(portTypeOfClass(u"QCGLImagePort"), PortType::Image);
    EXPECT_EQ(portTypeOfClass(u"QCVirtualPort"), PortType::Virtual);
    EXPECT_EQ(portTypeOfClass(u"QCMeshPort"), PortType::Other);
    EXPECT_EQ(portTypeOfClass(u""), PortType::Other);
}

TEST(Structure, BoundsItsDepthAndSize)
{
    Value nested = 1.0;
    for (int i = 0; i < 1'000; ++i) {
        nested = Structure::list({nested});
    }
    EXPECT_LE(nested.toStructure()->depth(), limits::structureDepth);
    Value doubled = Structure::list({1.0, 2.0});
    for (int i = 0; i < limits::structureDepth - 2; ++i) {
        doubled = Structure::list({doubled, doubled});
    }
    EXPECT_EQ(doubled.toStructure()->count(), 1) << "the second half would be too much";
}

TEST(Structure, FindsItsMembers)
{
    const StructureRef keyed = Structure::keyed({u"a"_s, u"b"_s, u"a"_s}, {1.0, 2.0, 3.0});
    EXPECT_EQ(keyed->member(u"a"_s), Value(1.0));
    EXPECT_EQ(keyed->member(2), Value(3.0));
    EXPECT_TRUE(keyed->member(-1).isNull());
    EXPECT_TRUE(keyed->member(3).isNull());
    EXPECT_EQ(Structure::list({5.0})->key(0), u"0"_s);
}

QByteArray encoded(const QImage &image, const char *format)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return buffer.data();
}

TEST(Image, IsDecodedWithinABudget)
{
    const auto budget = std::make_shared<ImageBudget>(10'000);
    QImage picture(40, 50, QImage::Format_RGB32);
    picture.fill(Qt::red);
    const QByteArray file = encoded(picture, "PNG");
    auto images = decodeImages(file, false, budget);
    ASSERT_EQ(images.size(), 1U);
    EXPECT_EQ(images[0]->pixelSize(), QSize(40, 50));
    EXPECT_EQ(budget->left(), 2'000);
    EXPECT_TRUE(decodeImages(file, false, budget).empty()) << "the budget is used up";
    images.clear();
    EXPECT_EQ(budget->left(), 10'000);
}

TEST(Image, IsRefusedWhenTooLargeOrBroken)
{
    const auto budget = std::make_shared<ImageBudget>(limits::imageBytes);
    const QByteArray wide =
        encoded(QImage(limits::imageSide + 1, 1, QImage::Format_Grayscale8), "PNG");
    EXPECT_TRUE(decodeImages(wide, false, budget).empty());
    const QByteArray good = encoded(QImage(20, 20, QImage::Format_RGB32), "PNG");
    EXPECT_TRUE(decodeImages(good.left(20), false, budget).empty());
    EXPECT_TRUE(decodeImages({}, true, budget).empty());
    EXPECT_TRUE(decodeImages("%PDF-1.4 not really", false, budget).empty());
    EXPECT_EQ(budget->left(), limits::imageBytes);
}

} // namespace
} // namespace tarnwell::compositions

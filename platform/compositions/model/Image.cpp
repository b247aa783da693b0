#include "compositions/model/Image.h"

#include "compositions/Limits.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace tarnwell::compositions {

namespace {

constexpr int bytesPerPixel = 4;
/// An animation has at most that many pictures; its pixels are bounded by the budget.
constexpr int maximumPictures = 10'000;

/// Formats that are decoded from the bytes alone. Others, such as drawings, may refer to files.
constexpr std::array formats{"png",  "jpg",  "jpeg", "gif", "tif", "tiff", "bmp",
                             "webp", "icns", "ico",  "pbm", "pgm", "ppm",  "tga"};

bool isAllowed(QSize size)
{
    return size.width() > 0 && size.height() > 0 && size.width() <= limits::imageSide &&
           size.height() <= limits::imageSide;
}

qint64 bytesOf(QSize size)
{
    return qint64(size.width()) * size.height() * bytesPerPixel;
}

} // namespace

ImageBudget::ImageBudget(qint64 bytes)
    : m_left(bytes)
{}

bool ImageBudget::take(qint64 bytes)
{
    if (m_left.fetch_sub(bytes) >= bytes) {
        return true;
    }
    m_left += bytes;
    return false;
}

Image::Image(Token, Kind kind, QSize size, std::shared_ptr<ImageBudget> budget, qint64 bytes)
    : m_kind(kind)
    , m_size(size)
    , m_budget(std::move(budget))
    , m_bytes(bytes)
{}

Image::~Image()
{
    if (m_budget) {
        m_budget->giveBack(m_bytes);
    }
}

ImageRef Image::fromBitmap(const QImage &bitmap, const std::shared_ptr<ImageBudget> &budget)
{
    if (!isAllowed(bitmap.size()) || !budget->take(bytesOf(bitmap.size()))) {
        return {};
    }
    auto image = std::make_shared<Image>(Token{}, Kind::Bitmap, bitmap.size(), budget,
                                         bytesOf(bitmap.size()));
    image->m_bitmap = bitmap.convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    return image->m_bitmap.isNull() ? ImageRef{} : image;
}

ImageRef Image::rendered(const QRect &extent, Outside outside,
                         const std::shared_ptr<ImageBudget> &budget)
{
    if (!isAllowed(extent.size()) || !budget->take(bytesOf(extent.size()))) {
        return {};
    }
    auto image = std::make_shared<Image>(Token{}, Kind::Rendered, extent.size(), budget,
                                         bytesOf(extent.size()));
    image->m_origin = extent.topLeft();
    image->m_outside = outside;
    return image;
}

ImageRef Image::constant(const Color &color)
{
    auto image = std::make_shared<Image>(Token{}, Kind::Constant, QSize(1, 1), nullptr, 0);
    image->m_color = color;
    return image;
}

int ImageRecipe::depth() const
{
    int deepest = 0;
    for (const ImageRef &image : images) {
        deepest = std::max(
            deepest, image && image->kind() == Image::Kind::Endless ? image->recipe().depth() : 0);
    }
    return deepest + 1;
}

ImageRef Image::endless(ImageRecipe recipe)
{
    if (recipe.depth() > limits::patternDepth) {
        return {};
    }
    auto image = std::make_shared<Image>(Token{}, Kind::Endless, QSize(1, 1), nullptr, 0);
    image->m_recipe = std::move(recipe);
    return image;
}

QRect coveringPixels(const QRectF &rectangle)
{
    constexpr double most = limits::imageSide;
    const auto bounded = [most](double number) {
        return number > -most ? std::min(number, most) : -most;
    };
    const QPointF from(bounded(rectangle.left()), bounded(rectangle.top()));
    const QPointF to(bounded(rectangle.right()), bounded(rectangle.bottom()));
    return QRectF(from, to).toAlignedRect();
}

bool canDecodeImages(QByteArray file)
{
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    const QByteArray format = QImageReader::imageFormat(&buffer);
    return std::ranges::any_of(formats, [&](const char *known) { return format == known; });
}

std::vector<ImageRef> decodeImages(const QByteArray &file, bool all,
                                   const std::shared_ptr<ImageBudget> &budget)
{
    std::vector<ImageRef> images;
    if (!canDecodeImages(file)) {
        return images;
    }
    QBuffer buffer;
    buffer.setData(file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    // The size is asked for before any pixel is decoded: a few bytes can promise gigabytes.
    const QSize promised = reader.size();
    if (!reader.canRead() ||
        (promised.isValid() && (!isAllowed(promised) || bytesOf(promised) > budget->left()))) {
        return images;
    }
    for (int i = 0; i < (all ? maximumPictures : 1); ++i) {
        const QImage picture = reader.read();
        if (picture.isNull()) {
            break;
        }
        ImageRef image = Image::fromBitmap(picture, budget);
        if (!image) {
            break;
        }
        images.push_back(std::move(image));
        if (!reader.canRead()) {
            break;
        }
    }
    return images;
}

} // namespace tarnwell::compositions

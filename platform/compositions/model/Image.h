#pragma once

#include "compositions/model/Value.h"

#include <QImage>
#include <QRect>
#include <QTransform>

#include <array>
#include <atomic>
#include <vector>

namespace tarnwell::compositions {

class Kernel;

/// What computes an image: a kernel with its arguments, and where in its images it looks.
struct ImageRecipe
{
    std::shared_ptr<const Kernel> kernel;
    std::vector<ImageRef> images; ///< in the order of the samplers
    std::vector<std::array<float, 4>> arguments;
    /// From a place of the result to the place of the images that it mainly depends on, and how
    /// many pixels around that.
    QTransform toImages = {};
    int margin = 0;

    /// Patterns within patterns.
    int depth() const;
};

/// The memory that the images of one composition share.
class ImageBudget
{
public:
    explicit ImageBudget(qint64 bytes);

    /// Takes that much, or nothing and returns false.
    bool take(qint64 bytes);
    void giveBack(qint64 bytes) { m_left += bytes; }
    qint64 left() const { return m_left; }

private:
    std::atomic<qint64> m_left;
};

/// An image on a wire: pixels in memory, a picture that the renderer draws first, one colour
/// without end, or a pattern without end. It counts against a budget for as long as it lives.
///
/// Images lie in a plane of pixels whose second axis points up. Most of them have their lower left
/// corner in its origin, but filters move, crop and widen them.
class Image
{
public:
    enum class Kind { Bitmap, Rendered, Constant, Endless };
    /// What is beyond the edges of an image for those that look there.
    enum class Outside { Nothing, NearestPixel };

    /// Null when the image is empty, too large, or the budget is used up.
    static ImageRef fromBitmap(const QImage &bitmap, const std::shared_ptr<ImageBudget> &budget);
    /// The image that a render target of a frame fills. Null as above.
    static ImageRef rendered(const QRect &extent, Outside outside,
                             const std::shared_ptr<ImageBudget> &budget);
    static ImageRef rendered(QSize pixels, const std::shared_ptr<ImageBudget> &budget)
    {
        return rendered(QRect(QPoint(0, 0), pixels), Outside::Nothing, budget);
    }
    static ImageRef constant(const Color &color);
    /// Null when patterns are nested too deep.
    static ImageRef endless(ImageRecipe recipe);

    ~Image();
    Q_DISABLE_COPY_MOVE(Image)

    Kind kind() const { return m_kind; }
    bool isEndless() const { return m_kind == Kind::Constant || m_kind == Kind::Endless; }
    /// 1 x 1 for what has no end.
    QSize pixelSize() const { return m_size; }
    /// The rectangle of the plane that it covers, its lower left corner first.
    QRect extent() const { return {m_origin, m_size}; }
    Outside outside() const { return m_outside; }
    /// Premultiplied, the first line at the top; null unless a bitmap.
    const QImage &bitmap() const { return m_bitmap; }
    const Color &color() const { return m_color; }
    /// Of an endless pattern.
    const ImageRecipe &recipe() const { return m_recipe; }

private:
    struct Token
    {};

public:
    Image(Token, Kind kind, QSize size, std::shared_ptr<ImageBudget> budget, qint64 bytes);

private:
    Kind m_kind;
    QPoint m_origin;
    QSize m_size;
    Outside m_outside = Outside::Nothing;
    QImage m_bitmap;
    Color m_color;
    ImageRecipe m_recipe;
    std::shared_ptr<ImageBudget> m_budget;
    qint64 m_bytes = 0;
};

/// The pixels of the plane that a rectangle touches, as far as images may reach.
QRect coveringPixels(const QRectF &rectangle);

/// Whether it is an image file of a format that can be read, damaged or not.
bool canDecodeImages(QByteArray file);

/// Reads the first picture of an image file, or all of them, as far as the limits and the budget
/// allow. Formats that cannot be read, and damaged files, give no image.
std::vector<ImageRef> decodeImages(const QByteArray &file, bool all,
                                   const std::shared_ptr<ImageBudget> &budget);

} // namespace tarnwell::compositions

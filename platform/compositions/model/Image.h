#pragma once

#include "compositions/model/Value.h"

#include <QImage>
#include <QSize>

#include <atomic>
#include <vector>

namespace tarnwell::compositions {

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

/// An image on a wire: pixels in memory, a picture that the renderer draws first, or one colour
/// without end. It counts against a budget for as long as it lives.
class Image
{
public:
    enum class Kind { Bitmap, Rendered, Constant };

    /// Null when the image is empty, too large, or the budget is used up.
    static ImageRef fromBitmap(const QImage &bitmap, const std::shared_ptr<ImageBudget> &budget);
    /// The image that a render target of a frame fills. Null as above.
    static ImageRef rendered(QSize pixels, const std::shared_ptr<ImageBudget> &budget);
    static ImageRef constant(const Color &color);

    ~Image();
    Q_DISABLE_COPY_MOVE(Image)

    Kind kind() const { return m_kind; }
    /// 1 x 1 for a constant.
    QSize pixelSize() const { return m_size; }
    /// Premultiplied, the first line at the top; null unless a bitmap.
    const QImage &bitmap() const { return m_bitmap; }
    const Color &color() const { return m_color; }

private:
    struct Token
    {};

public:
    Image(Token, Kind kind, QSize size, std::shared_ptr<ImageBudget> budget, qint64 bytes);

private:
    Kind m_kind;
    QSize m_size;
    QImage m_bitmap;
    Color m_color;
    std::shared_ptr<ImageBudget> m_budget;
    qint64 m_bytes = 0;
};

/// Reads the first picture of an image file, or all of them, as far as the limits and the budget
/// allow. Formats that cannot be read, and damaged files, give no image.
std::vector<ImageRef> decodeImages(const QByteArray &file, bool all,
                                   const std::shared_ptr<ImageBudget> &budget);

} // namespace tarnwell::compositions

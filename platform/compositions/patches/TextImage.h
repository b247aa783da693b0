#pragma once

#include "compositions/evaluator/PatchDefinition.h"
#include "compositions/text/TextPainter.h"

#include <deque>

namespace tarnwell::compositions {

/// A picture of a text. The last pictures are kept, so that the rows of a list, which one patch
/// paints in turn, are painted once and not in every frame.
class TextImage : public Patch
{
public:
    explicit TextImage(const NodeDescription &description);

    void run(Context &context) override;

    static std::span<const PortDefinition> inputs();
    static std::span<const PortDefinition> outputs();

private:
    struct Picture
    {
        TextRequest request;
        ImageRef image; ///< null when there is nothing to see
        int lines = 0;
        qint64 bytes = 0;
    };

    const Picture &pictureOf(const TextRequest &request, Context &context);
    void forget(qint64 bytes);

    bool m_measuresInPixels;
    QString m_fontName;
    TextAlignment m_horizontal;
    TextAlignment m_vertical;
    std::deque<Picture> m_pictures; ///< the latest first
    qint64 m_bytes = 0;
};

} // namespace tarnwell::compositions

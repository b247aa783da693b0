#pragma once

#include "compositions/evaluator/PatchDefinition.h"
#include "compositions/text/TextPainter.h"

#include <optional>

namespace tarnwell::compositions {

/// A picture of a text. It is painted anew only when something about it changed.
class TextImage : public Patch
{
public:
    explicit TextImage(const NodeDescription &description);

    void run(Context &context) override;

    static std::span<const PortDefinition> inputs();
    static std::span<const PortDefinition> outputs();

private:
    bool m_measuresInPixels;
    QString m_fontName;
    TextAlignment m_horizontal;
    TextAlignment m_vertical;
    std::optional<TextRequest> m_last;
};

} // namespace tarnwell::compositions

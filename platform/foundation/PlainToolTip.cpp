#include "foundation/PlainToolTip.h"

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

QString plainToolTip(const QString &text)
{
    // Without one of these no text is taken for markup.
    if (!text.contains(u'<') && !text.contains("&lt;"_L1))
        return text;
    return u"<p style=\"white-space: pre-wrap\">%1</p>"_s.arg(text.toHtmlEscaped());
}

} // namespace tarnwell::foundation

#include "effects/EffectInformation.h"

#include "compositions/model/Composition.h"
#include "foundation/ForeignText.h"

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

constexpr qsizetype longestName = 80;
constexpr qsizetype longestLabel = 240;
constexpr qsizetype mostLines = 5;
constexpr qsizetype longestToolTip = 2000;
constexpr qsizetype mostToolTipLines = 40;

/// Those who fill in a name or a notice of copyright in several lines mean one text by it.
QString nameText(const QString &text)
{
    return foundation::shownText(text.simplified(), longestName);
}

/// Only what a browser opens: a stranger's file must not have other programs started.
bool isWebAddress(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == "http"_L1 || url.scheme() == "https"_L1 || url.scheme() == "ftp"_L1);
}

} // namespace

EffectInformation effectInformation(const compositions::Composition &composition,
                                    const QString &displayName)
{
    EffectInformation information;
    information.name = nameText(composition.name);
    if (information.name.isEmpty())
        information.name = foundation::shownText(displayName, longestName);
    information.author = nameText(composition.copyright);

    const QString description = composition.description.trimmed();
    const QUrl url =
        description.size() <= longestToolTip ? QUrl(description, QUrl::StrictMode) : QUrl();
    const QString toolTip = foundation::shownLines(description, longestToolTip, mostToolTipLines);
    if (isWebAddress(url)) {
        information.link = url;
        information.linkText = foundation::shownText(url.host(), longestName);
        information.linkToolTip = toolTip;
    } else {
        information.linkText = foundation::shownLines(description, longestLabel, mostLines);
        if (information.linkText != toolTip)
            information.linkToolTip = toolTip;
    }
    return information;
}

} // namespace tarnwell::effects

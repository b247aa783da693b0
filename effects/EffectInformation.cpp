#include "effects/EffectInformation.h"

#include "compositions/model/Composition.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace tarnwell::effects {

namespace {

constexpr qsizetype longestLabel = 240;
constexpr qsizetype mostLines = 5;
constexpr qsizetype longestToolTip = 2000;
/// More than this much of an attribute is not even looked at.
constexpr qsizetype longestAttribute = 20'000;

QString shortened(const QString &text, qsizetype length)
{
    return text.size() > length ? text.left(length - 1).trimmed() + u'…' : text;
}

/// Fits into a label whatever it is: few lines, each without runs of blanks.
QString labelText(const QString &text)
{
    QStringList lines;
    const QStringList all = text.left(longestAttribute).split(u'\n');
    for (const QString &line : all) {
        const QString simple = line.simplified();
        if (!simple.isEmpty())
            lines.append(simple);
    }
    if (lines.size() > mostLines) {
        lines.resize(mostLines);
        lines.last() += u'…';
    }
    return shortened(lines.join(u'\n'), longestLabel);
}

/// Many files have their descriptions from a template, with the tags of a web page in them.
QString withoutTags(QString text)
{
    static const QRegularExpression tag(u"</?[A-Za-z][^<>]{0,1000}>"_s);
    static const QRegularExpression lineBreak(u"<br\\s*/?>|</(p|div|h[1-6]|li)>"_s,
                                              QRegularExpression::CaseInsensitiveOption);
    text.truncate(longestAttribute);
    if (!text.contains(tag))
        return text;
    text.replace(lineBreak, u"\n"_s).remove(tag);
    const std::pair<QLatin1StringView, QChar> entities[] = {
        {"&lt;"_L1, u'<'},   {"&gt;"_L1, u'>'},   {"&quot;"_L1, u'"'},
        {"&nbsp;"_L1, u' '}, {"&#39;"_L1, u'\''}, {"&amp;"_L1, u'&'},
    };
    for (const auto &[name, character] : entities)
        text.replace(name, QString(character));
    return text;
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
    information.name = labelText(composition.name);
    if (information.name.isEmpty())
        information.name = labelText(displayName);
    information.author = labelText(composition.copyright);

    const QString description = composition.description.trimmed();
    const QUrl url =
        description.size() <= longestToolTip ? QUrl(description, QUrl::StrictMode) : QUrl();
    if (isWebAddress(url)) {
        information.link = url;
        information.linkText = shortened(url.host(), longestLabel);
        information.linkToolTip = description;
    } else {
        const QString prose = withoutTags(description);
        information.linkText = labelText(prose);
        if (information.linkText.endsWith(u'…'))
            information.linkToolTip = shortened(prose.trimmed(), longestToolTip);
    }
    return information;
}

} // namespace tarnwell::effects

#include "foundation/StyledString.h"

namespace tarnwell::foundation {

StyledString::StyledString(const QString &text, TextAttributes attributes)
{
    append(text, attributes);
}

void StyledString::append(const QString &text, TextAttributes attributes)
{
    if (text.isEmpty())
        return;
    if (!m_runs.isEmpty() && m_runs.last().attributes == attributes)
        m_runs.last().text += text;
    else
        m_runs.append({text, attributes});
}

QString StyledString::text() const
{
    // One run is the rule; sharing its text costs nothing.
    if (m_runs.size() == 1)
        return m_runs.first().text;
    QString whole;
    for (const Run &run : m_runs)
        whole += run.text;
    return whole;
}

qsizetype StyledString::length() const
{
    qsizetype length = 0;
    for (const Run &run : m_runs)
        length += run.text.size();
    return length;
}

} // namespace tarnwell::foundation

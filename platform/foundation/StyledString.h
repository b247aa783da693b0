#pragma once

#include <QList>
#include <QString>

namespace tarnwell::foundation {

/// The fonts that texts are set in. The views know the sizes.
enum class FontStyle { Inherited, SmallSystem, SmallBoldSystem };

/// The colours that texts are set in. The views take them from the palette.
enum class TextColor { Inherited, DisabledControl, Gray };

struct TextAttributes
{
    FontStyle font = FontStyle::Inherited;
    TextColor color = TextColor::Inherited;

    friend bool operator==(const TextAttributes &, const TextAttributes &) = default;
};

/// A text with its font and colour. Equal when characters and attributes are.
class StyledString
{
public:
    struct Run
    {
        QString text;
        TextAttributes attributes;

        friend bool operator==(const Run &, const Run &) = default;
    };

    StyledString() = default;
    explicit StyledString(const QString &text, TextAttributes attributes = {});

    /// Adds a run; one with the attributes of the last run continues it.
    void append(const QString &text, TextAttributes attributes = {});

    const QList<Run> &runs() const { return m_runs; }
    QString text() const;
    qsizetype length() const;
    bool isEmpty() const { return length() == 0; }

    friend bool operator==(const StyledString &, const StyledString &) = default;

private:
    QList<Run> m_runs;
};

} // namespace tarnwell::foundation

#include "foundation/DesktopEntry.h"

#include "foundation/BoundedFile.h"
#include "foundation/Languages.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace tarnwell::foundation {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumFileSize = 1024 * 1024;

QString unescaped(QStringView text)
{
    if (!text.contains(u'\\'))
        return text.toString();
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\\' || i + 1 == text.size()) {
            result.append(text[i]);
            continue;
        }
        switch (text[++i].unicode()) {
        case 's':
            result.append(u' ');
            break;
        case 'n':
            result.append(u'\n');
            break;
        case 't':
            result.append(u'\t');
            break;
        case 'r':
            result.append(u'\r');
            break;
        case '\\':
            result.append(u'\\');
            break;
        default:
            result.append(u'\\').append(text[i]);
        }
    }
    return result;
}

/// Replaces the field codes of one word; a code that stands for a list of words stands alone.
QString expandedWord(const QString &word, const DesktopEntry &entry, const QString &entryPath,
                     const QString &document, bool &documentUsed)
{
    QString result;
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (word[i] != u'%' || i + 1 == word.size()) {
            result.append(word[i]);
            continue;
        }
        switch (word[++i].unicode()) {
        case '%':
            result.append(u'%');
            break;
        case 'f':
        case 'F':
            result.append(document);
            documentUsed = true;
            break;
        case 'u':
        case 'U':
            if (!document.isEmpty())
                result.append(QUrl::fromLocalFile(document).toString(QUrl::FullyEncoded));
            documentUsed = true;
            break;
        case 'c':
            result.append(entry.localizedValue(u"Name"_s, userLanguages()));
            break;
        case 'k':
            result.append(entryPath);
            break;
        default: // the codes that went out of use stand for nothing
            break;
        }
    }
    return result;
}

} // namespace

std::optional<DesktopEntry> DesktopEntry::read(const QString &path)
{
    const std::optional<QByteArray> bytes = readBoundedFile(path, maximumFileSize);
    return bytes ? parse(*bytes) : std::nullopt;
}

std::optional<DesktopEntry> DesktopEntry::parse(const QByteArray &bytes)
{
    DesktopEntry entry;
    bool inEntryGroup = false;
    qsizetype start = 0;
    while (start < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        if (end < 0)
            end = bytes.size();
        const QByteArrayView line = QByteArrayView(bytes).sliced(start, end - start).trimmed();
        start = end + 1;
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        if (line.startsWith('[')) {
            // The groups after the entry's own describe actions, which nobody asks for.
            if (inEntryGroup || line != "[Desktop Entry]")
                break;
            inEntryGroup = true;
            continue;
        }
        const qsizetype equals = line.indexOf('=');
        if (!inEntryGroup || equals <= 0)
            continue;
        entry.m_values.insert(QString::fromUtf8(line.first(equals).trimmed()),
                              QString::fromUtf8(line.sliced(equals + 1).trimmed()));
    }
    if (!inEntryGroup || entry.value(u"Type"_s) != "Application"_L1)
        return std::nullopt;
    return entry;
}

QString DesktopEntry::identifierForPath(const QString &path)
{
    static constexpr auto folder = "/applications/"_L1;
    const qsizetype found = path.lastIndexOf(folder);
    QString name = found < 0 ? path.section(u'/', -1) : path.mid(found + folder.size());
    if (name.endsWith(".desktop"_L1))
        name.chop(8);
    return name.replace(u'/', u'-');
}

QString DesktopEntry::value(const QString &key) const
{
    return unescaped(m_values.value(key));
}

QString DesktopEntry::localizedValue(const QString &key, const QStringList &languages) const
{
    for (const QString &locale : desktopEntryLocales(languages)) {
        const auto found = m_values.constFind(key + u'[' + locale + u']');
        if (found != m_values.cend())
            return unescaped(*found);
    }
    return value(key);
}

bool DesktopEntry::booleanValue(const QString &key) const
{
    return m_values.value(key) == "true"_L1;
}

QString DesktopEntry::executablePath() const
{
    const QString tryExec = value(u"TryExec"_s);
    if (!tryExec.isEmpty() && QStandardPaths::findExecutable(tryExec).isEmpty())
        return {};
    const QStringList words = splitDesktopCommand(value(u"Exec"_s));
    return words.isEmpty() ? QString() : QStandardPaths::findExecutable(words.first());
}

QStringList DesktopEntry::command(const QString &entryPath, const QString &document) const
{
    QStringList result;
    bool documentUsed = false;
    for (const QString &word : splitDesktopCommand(value(u"Exec"_s))) {
        if (word == "%i"_L1) {
            if (const QString icon = value(u"Icon"_s); !icon.isEmpty())
                result << u"--icon"_s << icon;
            continue;
        }
        const QString expanded = expandedWord(word, *this, entryPath, document, documentUsed);
        if (!expanded.isEmpty() || !word.contains(u'%'))
            result.append(expanded);
    }
    // A command that says nothing of documents takes one at its end, as file managers do it.
    if (!result.isEmpty() && !document.isEmpty() && !documentUsed)
        result.append(document);
    return result;
}

QStringList splitDesktopCommand(const QString &exec)
{
    QStringList words;
    QString word;
    bool inWord = false;
    bool quoted = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec[i];
        if (quoted) {
            if (c == u'"')
                quoted = false;
            else if (c == u'\\' && i + 1 < exec.size())
                word.append(exec[++i]);
            else
                word.append(c);
        } else if (c == u'"') {
            quoted = inWord = true;
        } else if (c == u' ' || c == u'\t' || c == u'\n') {
            if (inWord)
                words.append(word);
            word.clear();
            inWord = false;
        } else {
            word.append(c);
            inWord = true;
        }
    }
    if (quoted)
        return {};
    if (inWord)
        words.append(word);
    return words;
}

} // namespace tarnwell::foundation

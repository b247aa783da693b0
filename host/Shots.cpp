#include "host/Shots.h"

#include "host/ColorScheme.h"
#include "host/ErrorPage.h"
#include "host/PaneWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QPixmap>
#include <QTabWidget>

namespace tarnwell::host {

using namespace Qt::StringLiterals;

namespace {

/// "excludeListPage" as "exclude-list": names of files must not depend on the user's language.
QString fileNameOf(const QWidget *page)
{
    auto name = page->objectName();
    if (name.endsWith("Page"_L1))
        name.chop(4);
    QString result;
    for (const QChar character : std::as_const(name)) {
        if (character.isUpper())
            result += u'-';
        result += character.toLower();
    }
    return result.isEmpty() ? u"page"_s : result;
}

QString writeShot(QWidget &window, const QString &path)
{
    settle();
    return window.grab().save(path, "PNG") ? QString() : path;
}

} // namespace

void settle()
{
    // What one round posts, the next one handles; work that goes on for ever must not hold us.
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

QString writeShots(PaneWindow &window, const QString &folder)
{
    const QDir place(folder);
    if (!place.mkpath(u"."_s))
        return folder;
    QString failed;
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        applyColorScheme(scheme);
        const auto ending = scheme == ColorScheme::Dark ? u"-dark.png"_s : u"-light.png"_s;
        auto *pages = window.findChild<QTabWidget *>();
        if (!pages) {
            const auto name = window.errorPage() ? u"01-error"_s : u"01-page"_s;
            failed = writeShot(window, place.filePath(name + ending));
        }
        const int shownPage = pages ? pages->currentIndex() : 0;
        for (int i = 0; pages && i < pages->count() && failed.isEmpty(); ++i) {
            pages->setCurrentIndex(i);
            const auto number = QString::number(i + 1).rightJustified(2, u'0');
            const auto name = number + u'-' + fileNameOf(pages->widget(i));
            failed = writeShot(window, place.filePath(name + ending));
        }
        if (pages)
            pages->setCurrentIndex(shownPage);
        if (!failed.isEmpty())
            break;
    }
    applyColorScheme(ColorScheme::AsDesktop);
    return failed;
}

} // namespace tarnwell::host

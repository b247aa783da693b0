// The effects page on a real X server, with the demo home.

#include "desktop/TestBus.h"
#include "effects/QCView.h"
#include "fakes/FakeHostApplication.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QProcess>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTreeView>

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;

namespace tarnwell::tests {

namespace {

int colorsOf(const QImage &picture)
{
    std::set<QRgb> colors;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            colors.insert(picture.pixel(x, y));
    }
    return static_cast<int>(colors.size());
}

} // namespace

TEST(RealPreview, PlaysEveryCompositionOfTheDemo)
{
    // A copy, for the pane notes down what it finds there.
    const QTemporaryDir folder;
    const QString home = folder.filePath(u"home"_s);
    ASSERT_EQ(QProcess::execute(u"cp"_s, {u"-r"_s, QStringLiteral(TARNWELL_DEMO_HOME), home}), 0);
    fakes::FakeHostApplication icon;
    const auto bundle = foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE));
    ASSERT_TRUE(bundle);
    pane::PaneDesktop desktop({bundle->path(), home, u"/nowhere"_s, icon});
    pane::TarnwellPref pane(desktop.ports(), desktop.identityCache(), *bundle);
    QString error;
    const std::unique_ptr<QWidget> view(pane.loadMainView(&error));
    ASSERT_TRUE(view) << qPrintable(error);
    pane.mainViewDidLoad();
    view->show();
    const WId window = view->winId();
    auto *pages = view->findChild<QTabWidget *>(u"pages"_s);
    pages->setCurrentWidget(view->findChild<QWidget *>(u"effectsPage"_s));

    std::optional<bool> isPlayable;
    QObject::connect(pane.previewView(), &effects::QCView::playable,
                     [&](bool canPlay) { isPlayable = canPlay; });
    ASSERT_TRUE(waitUntil([&] { return isPlayable.has_value(); }));
    if (!*isPlayable)
        GTEST_SKIP() << "there is no OpenGL here";

    const QAbstractItemModel *model = pane.seView()->model();
    ASSERT_TRUE(model);
    EXPECT_EQ(model->rowCount(), 3);
    int played = 0;
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex group = model->index(row, 0);
        for (int child = 0; child < model->rowCount(group); ++child) {
            const QModelIndex composition = model->index(child, 0, group);
            SCOPED_TRACE(composition.data().toString().toStdString());
            pane.seView()->setCurrentIndex(composition);
            EXPECT_TRUE(pane.previewView()->isRendering());
            // The flat background before the first frame, and most first frames, are plainer.
            EXPECT_TRUE(
                waitUntil([&] { return colorsOf(pane.previewView()->grab().toImage()) > 20; }));
            EXPECT_FALSE(pane.qcName()->text().isEmpty());
            ++played;
        }
    }
    EXPECT_GE(played, 8);
    QFile maps(u"/proc/self/maps"_s);
    ASSERT_TRUE(maps.open(QIODevice::ReadOnly));
    const QByteArray mapped = maps.readAll();
    for (const char *library : {"Qt6Qml", "libLLVM", "gallium", "_dri.so", "libEGL_"})
        EXPECT_FALSE(mapped.contains(library)) << library;
    EXPECT_EQ(view->winId(), window) << "the window is not made anew";
}

} // namespace tarnwell::tests

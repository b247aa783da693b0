// The exclude list with very many entries, and the chooser with very many applications.

#include "fakes/FakeHostApplication.h"
#include "foundation/plist/PropertyList.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"
#include "ports/RunningApplications.h"
#include "ports/Workspace.h"
#include "ui/ApplicationChooser.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace tarnwell;

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("%s cannot be written.", qPrintable(path));
    file.write(bytes);
    file.close();
    // What was written a moment ago may change unnoticed, so it would be read again every time.
    const timespec times[2] = {{1'000'000'000, 0}, {1'000'000'000, 0}};
    ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0);
}

/// A home with a list of so many entries, of which so many lie on the disk.
class Home
{
public:
    Home(int entries, int installed)
    {
        plist::Array list;
        for (int i = 0; i < entries; ++i) {
            const QString id = u"com.example.application%1"_s.arg(i);
            const QString path = m_folder.path() + u"/Applications/Application %1.app"_s.arg(i);
            if (i < installed)
                writeFile(path + "/Contents/Info.plist"_L1,
                          plist::write(plist::Dictionary{{u"CFBundleIdentifier"_s, id}},
                                       plist::Format::Binary));
            list.append(
                plist::Dictionary{{u"ID"_s, id},
                                  {u"Path"_s, path},
                                  {u"DisplayName"_s, u"Name %1"_s.arg((i * 7919) % entries)},
                                  {u"Comment"_s, u"Comment"_s},
                                  {u"AliasRecord"_s, QByteArray(200, char(i))}});
        }
        writeFile(m_folder.path() + "/Library/Preferences/com.varnit.tarnwell.plist"_L1,
                  plist::write(plist::Dictionary{{u"ExcludeList"_s, plist::Value(list)}},
                               plist::Format::Binary));
    }
    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

class OpenPane
{
public:
    explicit OpenPane(const QString &home)
        : m_bundle(*foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)))
        , m_desktop({m_bundle.path(), home, home, m_icon})
        , pane(m_desktop.ports(), m_desktop.identityCache(), m_bundle)
    {
        QString error;
        view.reset(pane.loadMainView(&error));
        if (!view)
            qFatal("%s", qPrintable(error));
        pane.mainViewDidLoad();
        view->resize(720, 520);
        view->show();
        auto *tabs = view->findChild<QTabWidget *>();
        tabs->setCurrentWidget(view->findChild<QWidget *>(u"excludeListPage"_s));
    }

private:
    fakes::FakeHostApplication m_icon;
    foundation::Bundle m_bundle;
    pane::PaneDesktop m_desktop;

public:
    std::unique_ptr<QWidget> view; // outlives the pane
    pane::TarnwellPref pane;
};

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// Rebuilds a list of so many entries, so many of them installed, and draws it. The counters tell
/// the first time, when nothing is known of the applications yet, from all others.
void rebuildList(benchmark::State &state)
{
    const Home home(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    OpenPane open(home.path());
    QElapsedTimer timer;
    timer.start();
    open.pane.buildIEList();
    const double first = milliseconds(timer);
    double drawing = 0;
    for ([[maybe_unused]] auto _ : state) {
        open.pane.buildIEList();
        state.PauseTiming();
        timer.start();
        benchmark::DoNotOptimize(open.pane.ieListTable()->grab());
        drawing = milliseconds(timer);
        state.ResumeTiming();
    }
    state.counters["rows"] = open.pane.ieListTable()->model()->rowCount();
    state.counters["first_ms"] = first;
    state.counters["drawing_ms"] = drawing;
}

class PlainIcons final : public ports::Workspace
{
public:
    QIcon iconForFile(const QString &) const override { return m_icon; }
    QIcon iconForFileType(const QString &) const override { return m_icon; }
    QIcon iconFromImageFile(const QString &) const override { return m_icon; }
    bool openFile(const QString &) override { return false; }
    bool openUrl(const QUrl &) override { return false; }

private:
    QIcon m_icon{QPixmap(32, 32)};
};

/// Opens the chooser on so many applications, types into its search field, and draws it each time.
void searchInChooser(benchmark::State &state)
{
    QList<ports::InstalledApplication> applications;
    for (int i = 0; i < state.range(0); ++i)
        applications.append({u"/Applications/%1.app"_s.arg(i), u"com.example.number%1"_s.arg(i),
                             u"Application %1"_s.arg(i)});
    const PlainIcons icons;
    ports::ApplicationPanel panel;
    panel.allowsMultipleSelection = true;
    QElapsedTimer timer;
    timer.start();
    ui::ApplicationChooser chooser(panel, icons);
    chooser.setApplications(applications, {});
    chooser.show();
    QCoreApplication::processEvents();
    const double opening = milliseconds(timer);
    auto *search = chooser.findChild<QLineEdit *>();
    const QStringList texts{u"a"_s, u"app 1"_s, u"number9"_s, u""_s};
    int next = 0;
    for ([[maybe_unused]] auto _ : state) {
        search->setText(texts.at(next++ % texts.size()));
        QCoreApplication::processEvents();
    }
    state.counters["opening_ms"] = opening;
}

BENCHMARK(rebuildList)
    ->ArgNames({"entries", "installed"})
    ->Args({10000, 0})
    ->Args({10000, 300})
    ->Args({10000, 10000})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(searchInChooser)
    ->ArgName("applications")
    ->Arg(500)
    ->Arg(5000)
    ->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

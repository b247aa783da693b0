// What a synchronise costs: nothing new, beside a bare stat() of the same file in the same run, and
// one changed key in a small and in a large domain.

#include "desktop/FilePreferences.h"
#include "desktop/SystemClock.h"
#include "foundation/plist/Array.h"
#include "foundation/plist/Dictionary.h"
#include "foundation/plist/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/stat.h>

using namespace tarnwell;
using namespace Qt::StringLiterals;

namespace {

const QString domain = u"com.varnit.tarnwell"_s;

/// Shortcut records of many applications, as the plug-in stores them: 1,660 with a hundred each
/// make 19 MB.
plist::Dictionary domainOfApplications(int applications)
{
    plist::Dictionary shortcuts;
    for (int i = 0; i < applications; ++i) {
        plist::Array records;
        for (int j = 0; j < 100; ++j) {
            const QString item = u"Menu item %1 of application %2"_s.arg(j).arg(i);
            records.append(plist::Dictionary{{u"Title"_s, item},
                                             {u"Char"_s, QString(QChar(u'A' + j % 26))},
                                             {u"Modifiers"_s, 0x100 + j},
                                             {u"Path"_s, u"File/"_s + item}});
        }
        shortcuts.insert(u"com.example.application%1"_s.arg(i), records);
    }
    return {{u"Disabled"_s, false}, {u"MenuShortcuts"_s, shortcuts}};
}

class Home
{
public:
    explicit Home(int applications)
    {
        QDir().mkpath(m_folder.filePath(u"Library/Preferences"_s));
        QFile file(path());
        if (file.open(QIODevice::WriteOnly))
            file.write(plist::write(domainOfApplications(applications), plist::Format::Binary));
    }

    QString path() const
    {
        return m_folder.filePath(u"Library/Preferences/"_s + domain + u".plist"_s);
    }
    QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

void bareStat(benchmark::State &state)
{
    const Home home(10);
    const QByteArray path = QFile::encodeName(home.path());
    struct stat facts;
    for (auto _ : state)
        benchmark::DoNotOptimize(::stat(path.constData(), &facts));
}

void synchronizeUnchanged(benchmark::State &state)
{
    const Home home(int(state.range(0)));
    const desktop::SystemClock clock;
    desktop::FilePreferences preferences(home.folder(), clock);
    preferences.appSynchronize(domain);
    for (auto _ : state)
        benchmark::DoNotOptimize(preferences.appSynchronize(domain));
}

void synchronizeOneChangedKey(benchmark::State &state)
{
    const Home home(int(state.range(0)));
    const desktop::SystemClock clock;
    desktop::FilePreferences preferences(home.folder(), clock);
    preferences.appSynchronize(domain);
    int value = 0;
    for (auto _ : state) {
        preferences.setAppValue(u"Counter"_s, ++value, domain);
        if (!preferences.appSynchronize(domain))
            state.SkipWithError("The domain could not be stored.");
    }
    state.counters["file_bytes"] = double(QFileInfo(home.path()).size());
}

BENCHMARK(bareStat);
BENCHMARK(synchronizeUnchanged)->Arg(1)->Arg(1660);
BENCHMARK(synchronizeOneChangedKey)
    ->Arg(1)
    ->Arg(1660)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

BENCHMARK_MAIN();

#include "samples/updater/Check.h"

#include "ports/Clock.h"
#include "ports/NotificationCenter.h"
#include "ports/Preferences.h"
#include "ports/Timers.h"
#include "prefs/PreferenceKeys.h"

#include <iterator>
#include <utility>

namespace tarnwell::samples {

using namespace Qt::StringLiterals;
namespace keys = prefs::keys;

namespace {

const char *const steps[] = {
    "Looking for the server…",
    "Asking for the newest version…",
    "Comparing versions…",
};

} // namespace

Check::Check(ports::Preferences &preferences, ports::NotificationCenter &center,
             ports::Timers &timers, const ports::Clock &clock, QString moduleID)
    : m_preferences(preferences)
    , m_center(center)
    , m_timers(timers)
    , m_clock(clock)
    , m_moduleID(std::move(moduleID))
{}

Check::~Check() = default;

void Check::start(double secondsPerStep, std::function<void()> ended)
{
    m_secondsPerStep = secondsPerStep;
    m_ended = std::move(ended);
    m_cancelObservation = m_center.addObserver(u"com.varnit.updater.CancelUpdate"_s, m_moduleID,
                                               [this](const ports::Notification &) {
                                                   if (m_ended)
                                                       finish(u"The check was cancelled."_s);
                                               });
    takeStep();
}

void Check::takeStep()
{
    if (m_step == int(std::size(steps))) {
        finish(u"No newer version is available."_s);
        return;
    }
    report(QString::fromUtf8(steps[m_step++]));
    m_timer = m_timers.scheduleOnce(m_secondsPerStep, [this] { takeStep(); });
}

void Check::report(const QString &status)
{
    m_center.post({u"com.varnit.updater.statuschange"_s, m_moduleID,
                   plist::Dictionary{{u"Date"_s, plist::Date{m_clock.absoluteTime()}},
                                     {u"Status"_s, status}}});
}

void Check::finish(const QString &result)
{
    m_timer.reset();
    // Stored first: whoever hears of the end reads it.
    m_preferences.setAppValue(keys::suLastCheckStatus, result, m_moduleID);
    m_preferences.appSynchronize(m_moduleID);
    report(result);
    m_center.post({u"com.varnit.updater.UpdateCheckCompleted"_s, m_moduleID, {}});
    std::exchange(m_ended, nullptr)();
}

} // namespace tarnwell::samples

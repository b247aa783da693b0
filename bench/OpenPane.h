#pragma once

#include "fakes/FakeHostApplication.h"
#include "pane/PaneDesktop.h"
#include "pane/TarnwellPref.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QWidget>

#include <memory>

namespace tarnwell::bench {

/// A home with so many applications, each with so many changed shortcuts.
class LargeHome
{
public:
    LargeHome(int applications, int items) { make(items, applications); }

    void make(int items, int applications) const
    {
        const int status = QProcess::execute(
            QStringLiteral("python3"),
            {QStringLiteral(TARNWELL_MAKE_LARGE_DOMAIN), QStringLiteral("--bundles"),
             QString::number(applications), QString::number(items), path()});
        if (status != 0)
            qFatal("The large home could not be made.");
    }
    QString path() const { return m_folder.path(); }
    QString domainFile() const
    {
        return path() + QStringLiteral("/Library/Preferences/com.varnit.tarnwell.plist");
    }
    QByteArray domainBytes() const
    {
        QFile file(domainFile());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_folder;
};

/// The pane on a home, up to its first showing.
class OpenPane
{
public:
    explicit OpenPane(const LargeHome &home)
        : m_bundle(*foundation::Bundle::open(QStringLiteral(TARNWELL_PANE_BUNDLE)))
        , m_desktop({m_bundle.path(), home.path(), home.path(), m_icon})
        , pane(m_desktop.ports(), m_desktop.identityCache(), m_bundle)
    {
        m_desktop.setMissedNotificationsHandler([this] { joined = true; });
        QString error;
        view.reset(pane.loadMainView(&error));
        if (!view)
            qFatal("%s", qPrintable(error));
        pane.mainViewDidLoad();
        pane.willSelect();
    }

private:
    fakes::FakeHostApplication m_icon;
    foundation::Bundle m_bundle;
    pane::PaneDesktop m_desktop;

public:
    bool joined = false;
    std::unique_ptr<QWidget> view; // outlives the pane
    pane::TarnwellPref pane;
};

} // namespace tarnwell::bench

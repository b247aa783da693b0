#pragma once

#include "ports/OpenPanel.h"

#include <QObject>

#include <memory>

class QDialog;

namespace tarnwell::ports {
class Applications;
class RunningApplications;
class Sheets;
class Workspace;
} // namespace tarnwell::ports

namespace tarnwell::ui {

/// Open panels as sheets. The services outlive it; a panel that is up goes away with it.
class WidgetOpenPanel final : public QObject, public ports::OpenPanel
{
    Q_OBJECT

public:
    WidgetOpenPanel(ports::Sheets &sheets, ports::Applications &applications,
                    const ports::RunningApplications &running, const ports::Workspace &workspace);
    ~WidgetOpenPanel() override;

    void chooseApplications(const ports::ApplicationPanel &panel, QWidget *onWindowOf,
                            ApplicationsDidEnd didEnd) override;
    void chooseFileToOpen(const QString &title, const QStringList &filters, QWidget *onWindowOf,
                          FileDidEnd didEnd) override;
    void chooseFileToSave(const QString &title, const QString &suggestedName, QWidget *onWindowOf,
                          FileDidEnd didEnd) override;

private:
    bool isBusy() const { return m_sheet != nullptr; }
    void begin(std::unique_ptr<QDialog> sheet, QWidget *onWindowOf, std::function<void()> didEnd);

    ports::Sheets &m_sheets;
    ports::Applications &m_applications;
    const ports::RunningApplications &m_running;
    const ports::Workspace &m_workspace;
    std::unique_ptr<QDialog> m_sheet;
};

} // namespace tarnwell::ui

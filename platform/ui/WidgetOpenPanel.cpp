#include "ui/WidgetOpenPanel.h"

#include "ports/Applications.h"
#include "ports/RunningApplications.h"
#include "ports/Sheets.h"
#include "ui/ApplicationChooser.h"
#include "ui/ForeignLabel.h"

#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tarnwell::ui {

namespace {

std::unique_ptr<QFileDialog> makeFileDialog(const QString &title)
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    auto dialog = std::make_unique<QFileDialog>(
        nullptr, title, QFileInfo(documents).isDir() ? documents : QDir::homePath());
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    showFileNamesHonestly(dialog.get());
    return dialog;
}

} // namespace

WidgetOpenPanel::WidgetOpenPanel(ports::Sheets &sheets, ports::Applications &applications,
                                 const ports::RunningApplications &running,
                                 const ports::Workspace &workspace)
    : m_sheets(sheets)
    , m_applications(applications)
    , m_running(running)
    , m_workspace(workspace)
{}

WidgetOpenPanel::~WidgetOpenPanel() = default;

void WidgetOpenPanel::chooseApplications(const ports::ApplicationPanel &panel, QWidget *onWindowOf,
                                         ApplicationsDidEnd didEnd)
{
    if (isBusy())
        return;
    auto chooser = std::make_unique<ApplicationChooser>(panel, m_workspace);
    m_applications.refresh();
    const QList<ports::InstalledApplication> installed = m_applications.installedApplications();
    chooser->setApplications(installed, m_running.running(installed));
    auto chosen = std::make_shared<QStringList>();
    connect(chooser.get(), &ApplicationChooser::chosen, this,
            [chosen](const QStringList &paths) { *chosen = paths; });
    begin(std::move(chooser), onWindowOf, [chosen, didEnd = std::move(didEnd)] {
        didEnd(chosen->isEmpty() ? cancelButton : okButton, *chosen);
    });
}

void WidgetOpenPanel::chooseFileToOpen(const QString &title, const QStringList &filters,
                                       QWidget *onWindowOf, FileDidEnd didEnd)
{
    if (isBusy())
        return;
    auto dialog = makeFileDialog(title);
    dialog->setObjectName(u"fileToOpen"_s);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilters(filters);
    auto chosen = std::make_shared<QString>();
    connect(dialog.get(), &QFileDialog::fileSelected, this,
            [chosen](const QString &path) { *chosen = path; });
    begin(std::move(dialog), onWindowOf, [chosen, didEnd = std::move(didEnd)] { didEnd(*chosen); });
}

void WidgetOpenPanel::chooseFileToSave(const QString &title, const QString &suggestedName,
                                       QWidget *onWindowOf, FileDidEnd didEnd)
{
    if (isBusy())
        return;
    auto dialog = makeFileDialog(title);
    dialog->setObjectName(u"fileToSave"_s);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix(QFileInfo(suggestedName).suffix());
    dialog->selectFile(suggestedName);
    auto chosen = std::make_shared<QString>();
    connect(dialog.get(), &QFileDialog::fileSelected, this,
            [chosen](const QString &path) { *chosen = path; });
    begin(std::move(dialog), onWindowOf, [chosen, didEnd = std::move(didEnd)] { didEnd(*chosen); });
}

void WidgetOpenPanel::begin(std::unique_ptr<QDialog> sheet, QWidget *onWindowOf,
                            std::function<void()> didEnd)
{
    m_sheet = std::move(sheet);
    m_sheets.beginSheet(m_sheet.get(), onWindowOf, [this, didEnd = std::move(didEnd)](int) {
        m_sheet->hide();
        m_sheet.release()->deleteLater();
        didEnd();
    });
}

} // namespace tarnwell::ui

#include "ui/ApplicationBrowser.h"

#include "foundation/Bundle.h"
#include "foundation/ForeignText.h"
#include "ui/ForeignLabel.h"

#include <QFileSystemModel>
#include <QMessageBox>
#include <QSortFilterProxyModel>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::ui {

namespace {

bool isDesktopEntry(const QFileInfo &file)
{
    return file.suffix() == "desktop"_L1;
}

/// Leaves out the files that are no applications. Folders stay, as the way to others.
class ApplicationFilter final : public QSortFilterProxyModel
{
public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override
    {
        const auto *files = static_cast<QFileSystemModel *>(sourceModel());
        const QFileInfo file = files->fileInfo(files->index(row, 0, parent));
        return file.isDir() || file.isExecutable() || isDesktopEntry(file);
    }
};

/// Few machines have a folder of bundles; programs of one's own are nearer to one's home.
QString existingFolder(const QString &folder)
{
    return QFileInfo(folder).isDir() ? folder : QDir::homePath();
}

} // namespace

ApplicationBrowser::ApplicationBrowser(const ports::ApplicationPanel &panel, QWidget *parent)
    : QFileDialog(parent, panel.title, existingFolder(panel.folder))
    , m_panel(panel)
{
    setObjectName(u"applicationBrowser"_s);
    // The desktop's own dialogs can neither leave files out nor take a folder for a file.
    setOption(QFileDialog::DontUseNativeDialog);
    setOption(QFileDialog::ReadOnly);
    setFileMode(panel.allowsMultipleSelection ? ExistingFiles : ExistingFile);
    setLabelText(QFileDialog::Accept, panel.prompt);
    showFileNamesHonestly(this);
    setProxyModel(new ApplicationFilter(this));
    connect(this, &QFileDialog::currentChanged, this,
            [this](const QString &path) { m_current = path; });
    connect(this, &QFileDialog::directoryEntered, this, [this](const QString &path) {
        if (isItem(path))
            choose({path});
    });
}

bool ApplicationBrowser::isItem(const QString &path) const
{
    const QFileInfo item(QDir::cleanPath(path));
    if (item.isDir()) {
        const bool isPackage = !m_panel.treatsFilePackagesAsDirectories &&
                               m_panel.types.contains(item.suffix(), Qt::CaseInsensitive) &&
                               foundation::Bundle::open(path);
        return isPackage || m_panel.canChooseDirectories;
    }
    if (isDesktopEntry(item))
        return foundation::Bundle::open(path).has_value();
    return item.isFile() && item.isExecutable();
}

void ApplicationBrowser::choose(const QStringList &paths)
{
    Q_EMIT chosen(paths);
    done(Accepted);
}

void ApplicationBrowser::accept()
{
    QStringList paths = selectedFiles();
    if (paths.isEmpty() && !m_current.isEmpty())
        paths.append(m_current);
    const auto other = std::find_if_not(paths.cbegin(), paths.cend(),
                                        [this](const QString &path) { return isItem(path); });
    if (paths.isEmpty() || (other != paths.cend() && QFileInfo(*other).isDir()))
        QFileDialog::accept(); // enters the folder
    else if (other != paths.cend())
        refuse(*other);
    else
        choose(paths);
}

void ApplicationBrowser::refuse(const QString &path)
{
    auto *message = new QMessageBox(this);
    message->setObjectName(u"noApplication"_s);
    message->setAttribute(Qt::WA_DeleteOnClose);
    message->setWindowTitle(m_panel.title);
    message->setIcon(QMessageBox::Warning);
    message->setTextFormat(Qt::PlainText);
    message->setText(
        tr("\"%1\" is not an application.").arg(foundation::shownText(QFileInfo(path).fileName())));
    message->setInformativeText(tr("Choose a bundle, a desktop entry or a program."));
    message->open();
}

} // namespace tarnwell::ui

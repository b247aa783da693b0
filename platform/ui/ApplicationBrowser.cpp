#include "ui/ApplicationBrowser.h"

#include "foundation/Bundle.h"

#include <QFileSystemModel>
#include <QSortFilterProxyModel>

using namespace Qt::StringLiterals;

namespace tarnwell::ui {

namespace {

class ApplicationFilter final : public QSortFilterProxyModel
{
public:
    ApplicationFilter(const QStringList &types, QObject *parent)
        : QSortFilterProxyModel(parent)
        , m_types(types)
    {}

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override
    {
        const auto *files = static_cast<QFileSystemModel *>(sourceModel());
        const QFileInfo file = files->fileInfo(files->index(row, 0, parent));
        return file.isDir() || file.isExecutable() || file.suffix() == "desktop"_L1 ||
               m_types.contains(file.suffix());
    }

private:
    QStringList m_types;
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
    setProxyModel(new ApplicationFilter(panel.types, this));
    connect(this, &QFileDialog::currentChanged, this,
            [this](const QString &path) { m_current = path; });
    connect(this, &QFileDialog::directoryEntered, this, [this](const QString &path) {
        if (isItem(path))
            choose({path});
    });
}

bool ApplicationBrowser::isItem(const QString &path) const
{
    if (!QFileInfo(path).isDir())
        return QFileInfo::exists(path);
    return m_panel.canChooseDirectories ||
           (!m_panel.treatsFilePackagesAsDirectories && foundation::Bundle::open(path));
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
    if (!paths.isEmpty() && std::all_of(paths.cbegin(), paths.cend(),
                                        [this](const QString &path) { return isItem(path); }))
        choose(paths);
    else
        QFileDialog::accept();
}

} // namespace tarnwell::ui

#include "ui/ApplicationChooserModel.h"

#include "foundation/ForeignText.h"
#include "foundation/PlainToolTip.h"
#include "foundation/StyledString.h"
#include "ports/Workspace.h"
#include "ui/StyledText.h"

#include <QCollator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::ui {

using foundation::FontStyle;
using foundation::StyledString;
using foundation::TextColor;

namespace {

constexpr qsizetype longestLine = 200;

QString shownName(const ports::InstalledApplication &application)
{
    return foundation::shownText(application.displayName, longestLine);
}

} // namespace

ApplicationChooserModel::ApplicationChooserModel(const ports::Workspace &workspace,
                                                 bool severalMayBeChosen, QObject *parent)
    : QAbstractListModel(parent)
    , m_workspace(workspace)
    , m_severalMayBeChosen(severalMayBeChosen)
{}

void ApplicationChooserModel::setApplications(
    const QList<ports::InstalledApplication> &applications, const QSet<QString> &running)
{
    beginResetModel();
    m_rows.clear();
    for (const ports::InstalledApplication &application : applications)
        m_rows.push_back({application, running.contains(application.path), false, {}});
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::sort(m_rows.begin(), m_rows.end(), [&collator](const Row &a, const Row &b) {
        if (a.isRunning != b.isRunning)
            return a.isRunning;
        const int names = collator.compare(a.application.displayName, b.application.displayName);
        return names != 0 ? names < 0 : a.application.path < b.application.path;
    });
    endResetModel();
}

QStringList ApplicationChooserModel::tickedPaths() const
{
    QStringList result;
    for (const Row &row : m_rows) {
        if (row.isTicked)
            result.append(row.application.path);
    }
    return result;
}

QStringList ApplicationChooserModel::tickedNames() const
{
    QStringList result;
    for (const Row &row : m_rows) {
        if (row.isTicked)
            result.append(shownName(row.application));
    }
    return result;
}

int ApplicationChooserModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ApplicationChooserModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return shownName(row.application);
    case Qt::AccessibleTextRole:
        return row.isRunning ? tr("%1, running").arg(shownName(row.application))
                             : shownName(row.application);
    case Qt::ToolTipRole:
        return foundation::plainToolTip(foundation::shownText(row.application.path, longestLine));
    case PathRole:
        return row.application.path;
    case SearchTextRole:
        return QString(row.application.displayName + u'\n' + row.application.identifier);
    case Qt::DecorationRole:
        return iconOf(row);
    case Qt::CheckStateRole:
        if (m_severalMayBeChosen)
            return row.isTicked ? Qt::Checked : Qt::Unchecked;
        return {};
    case styledTextRole: {
        StyledString text(shownName(row.application) + u'\n');
        text.append(secondLine(row), {FontStyle::SmallSystem, TextColor::Gray});
        return QVariant::fromValue(text);
    }
    default:
        return {};
    }
}

bool ApplicationChooserModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::CheckStateRole || !m_severalMayBeChosen ||
        !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    m_rows[size_t(index.row())].isTicked = value.toInt() == Qt::Checked;
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

Qt::ItemFlags ApplicationChooserModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractListModel::flags(index);
    if (index.isValid() && m_severalMayBeChosen)
        flags |= Qt::ItemIsUserCheckable;
    return flags | Qt::ItemNeverHasChildren;
}

QString ApplicationChooserModel::secondLine(const Row &row) const
{
    const QString identifier = foundation::shownText(row.application.identifier, longestLine);
    if (!row.isRunning)
        return identifier;
    return identifier.isEmpty() ? tr("Running now") : tr("Running now – %1").arg(identifier);
}

QIcon ApplicationChooserModel::iconOf(const Row &row) const
{
    if (!row.icon) {
        row.icon = m_workspace.iconForFile(row.application.path);
        if (row.icon->isNull())
            row.icon = m_workspace.iconForFileType(u"app"_s);
    }
    return *row.icon;
}

} // namespace tarnwell::ui

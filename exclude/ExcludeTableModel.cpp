#include "exclude/ExcludeTableModel.h"

#include "exclude/ExcludeRecord.h"
#include "exclude/ExcludeRows.h"
#include "foundation/ForeignText.h"
#include "foundation/PlainToolTip.h"
#include "ports/Workspace.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tarnwell::exclude {

namespace {

constexpr qsizetype longestToolTip = 200;

} // namespace

ExcludeTableModel::ExcludeTableModel(const QStringList &columnIdentifiers,
                                     const QStringList &headings,
                                     const ports::FileManager &fileManager,
                                     const ports::Workspace &workspace, const QIcon &predefinedIcon,
                                     QObject *parent)
    : QAbstractTableModel(parent)
    , m_headings(headings)
    , m_fileManager(fileManager)
    , m_workspace(workspace)
    , m_predefinedIcon(predefinedIcon)
{
    for (const QString &identifier : columnIdentifiers)
        m_columns.append(identifier.toInt());
}

void ExcludeTableModel::setRecords(const plist::Array &records)
{
    if (records == m_records)
        return;
    beginResetModel();
    m_records = records;
    endResetModel();
}

int ExcludeTableModel::indexOf(const plist::Value &record) const
{
    const auto *found = std::find(m_records.begin(), m_records.end(), record);
    if (const plist::Value &id = record.toDictionary().value(record::identifier);
        found == m_records.end() && id.isString())
        found = std::find_if(m_records.begin(), m_records.end(), [&id](const plist::Value &other) {
            return other.toDictionary().value(record::identifier) == id;
        });
    return found == m_records.end() ? -1 : static_cast<int>(found - m_records.begin());
}

int ExcludeTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

int ExcludeTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_columns.size());
}

QVariant ExcludeTableModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const plist::Dictionary &dictionary = m_records.at(index.row()).toDictionary();
    return m_columns.at(index.column()) == iconColumn ? iconData(dictionary, role)
                                                      : textData(dictionary, role);
}

QVariant ExcludeTableModel::textData(const plist::Dictionary &dictionary, int role) const
{
    switch (role) {
    case StyledStringRole:
        return QVariant::fromValue(shownExcludeCell(dictionary, m_fileManager));
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownExcludeCell(dictionary, m_fileManager).text().trimmed();
    case Qt::ToolTipRole:
        return foundation::plainToolTip(
            foundation::shownText(dictionary.value(record::path).toString(), longestToolTip));
    default:
        return {};
    }
}

QVariant ExcludeTableModel::iconData(const plist::Dictionary &dictionary, int role) const
{
    const bool predefined = isPredefined(dictionary);
    if (role == Qt::AccessibleTextRole || role == Qt::ToolTipRole)
        return predefined ? tr("Predefined") : QString();
    if (role != Qt::DecorationRole)
        return {};
    if (predefined)
        return m_predefinedIcon;
    const QIcon icon = m_workspace.iconForFile(dictionary.value(record::path).toString());
    return icon.isNull() ? m_workspace.iconForFileType(u"app"_s) : icon;
}

QVariant ExcludeTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_headings.value(section);
}

} // namespace tarnwell::exclude

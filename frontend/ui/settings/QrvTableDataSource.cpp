#include "QrvTableDataSource.h"

namespace quorvane {

QrvTableDataSource::QrvTableDataSource(Preference preference, QObject *parent)
    : QAbstractTableModel(parent), m_preference(preference) {}

void QrvTableDataSource::awakeFromNib() {
    const QString stored = Preferences::text(m_preference);
    beginResetModel();
    m_rows = stored.isNull() ? QStringList() : stored.split(u'|');
    endResetModel();
}

void QrvTableDataSource::addRow(const QString &row) {
    if (row.isNull() || hasRow(row)) {
        return;
    }
    const int at = static_cast<int>(m_rows.size());
    beginInsertRows({}, at, at);
    m_rows.append(row);
    endInsertRows();
    storeListOfIPs();
}

void QrvTableDataSource::deleteRow(int index) {
    if (index < 0 || index >= m_rows.size()) {
        return;
    }
    beginRemoveRows({}, index, index);
    m_rows.removeAt(index);
    endRemoveRows();
    storeListOfIPs();
}

void QrvTableDataSource::deleteAll() {
    setRowsData({});
    storeListOfIPs();
}

bool QrvTableDataSource::hasRow(const QString &row) const {
    return m_rows.contains(row);
}

void QrvTableDataSource::storeListOfIPs() const {
    Preferences::store({{m_preference, m_rows.isEmpty() ? QStringLiteral("") : m_rows.join(u'|')}});
    Preferences::synchronize();
}

void QrvTableDataSource::setRowsData(const QStringList &newRows) {
    beginResetModel();
    m_rows = newRows;
    endResetModel();
}

int QrvTableDataSource::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int QrvTableDataSource::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : 1;
}

QVariant QrvTableDataSource::data(const QModelIndex &index, int role) const {
    const bool isTextRole = role == Qt::DisplayRole || role == Qt::AccessibleTextRole;
    if (!isTextRole || !index.isValid() || index.row() >= m_rows.size()) {
        return {};
    }
    return m_rows.at(index.row());
}

Qt::ItemFlags QrvTableDataSource::flags(const QModelIndex &index) const {
    return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

} // namespace quorvane

#include "QrvTableDataSource.h"

#include "platform/Platform.h"
#include "platform/PreferencesStore.h"

namespace quorvane {

QrvTableDataSource::QrvTableDataSource(const QString &preferenceKey, QObject *parent)
    : QAbstractTableModel(parent), m_key(preferenceKey) {}

void QrvTableDataSource::awakeFromNib() {
    const QString stored = platform::Platform::current().preferences->string(m_key);
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
    auto &services = platform::Platform::current();
    services.preferences->setValue(m_key, m_rows.isEmpty() ? QStringLiteral("") : m_rows.join(u'|'));
    services.preferences->synchronize();
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

#pragma once

#include "frontend/support/Preferences.h"

#include <QAbstractTableModel>
#include <QStringList>

namespace quorvane {

/// The rows of a list of the user, in the order in which they were added and without duplicates. They are
/// stored as one text joined by "|". Main thread.
class QrvTableDataSource final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit QrvTableDataSource(Preference preference = Preference::DiscardedIps, QObject *parent = nullptr);

    /// Reads the stored rows. A stored empty text is one empty row.
    void awakeFromNib();
    /// A null text and a row that the list contains already are ignored.
    void addRow(const QString &row);
    /// An index outside the list is ignored.
    void deleteRow(int index);
    void deleteAll();
    [[nodiscard]] bool hasRow(const QString &row) const;
    void storeListOfIPs() const;

    [[nodiscard]] const QStringList &rowsData() const { return m_rows; }

    void setRowsData(const QStringList &newRows);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    Preference m_preference;
    QStringList m_rows;
};

} // namespace quorvane

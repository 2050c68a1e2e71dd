#pragma once

#include "QrvTableDataSource.h"

#include <QTableView>

/// The table in which the user looks after a list of rows. Delete removes the selected row, Ctrl+C copies it.
/// Main thread.
class QrvDiscardIpTableViewController final : public QTableView {
    Q_OBJECT

public:
    explicit QrvDiscardIpTableViewController(QWidget *parent = nullptr);

    /// Not owned; must outlive the table's use.
    void setDataSource(QrvTableDataSource *source);

    void addRow(const QString &row);
    /// Nothing happens while no row is selected.
    void deleteSelectedRow();
    void clearAll();
    [[nodiscard]] bool hasRow(const QString &row) const;
    [[nodiscard]] QStringList getRowData() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    [[nodiscard]] int selectedRow() const;
    void copySelectedRow() const;

    QrvTableDataSource *dataSource = nullptr;
};

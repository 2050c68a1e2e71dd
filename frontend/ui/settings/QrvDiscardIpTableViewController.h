#pragma once

#include "QrvTableDataSource.h"

#include <QTableView>

namespace quorvane {

/// The table in which the user edits a list of rows. Ctrl+C copies the selected row; Delete requests its
/// removal. Main thread.
class QrvDiscardIpTableViewController final : public QTableView {
    Q_OBJECT
    /// The text of an empty table.
    Q_PROPERTY(QString emptyHint READ emptyHint WRITE setEmptyHint)

public:
    explicit QrvDiscardIpTableViewController(QWidget *parent = nullptr);

    /// Not owned; must outlive the table's use. Null removes the current one.
    void setDataSource(QrvTableDataSource *source);

    void addRow(const QString &row);
    /// Does nothing without a selected row.
    void deleteSelectedRow();
    void clearAll();
    [[nodiscard]] bool hasRow(const QString &row) const;
    [[nodiscard]] QStringList getRowData() const;

    [[nodiscard]] QString emptyHint() const { return m_hint; }

    void setEmptyHint(const QString &text);

Q_SIGNALS:
    /// The Delete key was pressed, with or without a selected row.
    void deletePressed();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] int selectedRow() const;
    void copySelectedRow() const;

    QrvTableDataSource *m_dataSource = nullptr;
    QString m_hint;
};

} // namespace quorvane

#pragma once

#include "QrvTableDataSource.h"

#include <QTableView>

namespace quorvane {

/// The table in which the user looks after a list of rows. Ctrl+C copies the selected row; Delete asks to
/// have it removed. Main thread.
class QrvDiscardIpTableViewController final : public QTableView {
    Q_OBJECT
    /// What an empty table says.
    Q_PROPERTY(QString emptyHint READ emptyHint WRITE setEmptyHint)

public:
    explicit QrvDiscardIpTableViewController(QWidget *parent = nullptr);

    /// Not owned; must outlive the table's use. Null takes the present one away.
    void setDataSource(QrvTableDataSource *source);

    void addRow(const QString &row);
    /// Nothing happens while no row is selected.
    void deleteSelectedRow();
    void clearAll();
    [[nodiscard]] bool hasRow(const QString &row) const;
    [[nodiscard]] QStringList getRowData() const;

    [[nodiscard]] QString emptyHint() const { return m_hint; }

    void setEmptyHint(const QString &text);

Q_SIGNALS:
    /// The Delete key, with or without a selected row.
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

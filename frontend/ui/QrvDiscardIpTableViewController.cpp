#include "QrvDiscardIpTableViewController.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

QrvDiscardIpTableViewController::QrvDiscardIpTableViewController(QWidget *parent) : QTableView(parent) {
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    horizontalHeader()->setVisible(false);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->setVisible(false);
    setAccessibleName(tr("Discarded IP addresses"));
}

void QrvDiscardIpTableViewController::setDataSource(QrvTableDataSource *source) {
    dataSource = source;
    setModel(source);
}

void QrvDiscardIpTableViewController::addRow(const QString &row) {
    if (dataSource != nullptr) {
        dataSource->addRow(row);
    }
}

int QrvDiscardIpTableViewController::selectedRow() const {
    const QModelIndexList selected = selectionModel() ? selectionModel()->selectedRows() : QModelIndexList();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void QrvDiscardIpTableViewController::deleteSelectedRow() {
    if (dataSource != nullptr) {
        dataSource->deleteRow(selectedRow());
    }
}

void QrvDiscardIpTableViewController::clearAll() {
    if (dataSource != nullptr) {
        dataSource->deleteAll();
    }
}

bool QrvDiscardIpTableViewController::hasRow(const QString &row) const {
    return dataSource != nullptr && dataSource->hasRow(row);
}

QStringList QrvDiscardIpTableViewController::getRowData() const {
    return dataSource != nullptr ? dataSource->rowsData() : QStringList();
}

void QrvDiscardIpTableViewController::copySelectedRow() const {
    if (const int row = selectedRow(); row >= 0) {
        QGuiApplication::clipboard()->setText(dataSource->rowsData().at(row));
    }
}

void QrvDiscardIpTableViewController::keyPressEvent(QKeyEvent *event) {
    if (event->matches(QKeySequence::Copy)) {
        copySelectedRow();
    } else if (event->key() == Qt::Key_Delete) {
        deleteSelectedRow();
    } else {
        QTableView::keyPressEvent(event);
    }
}

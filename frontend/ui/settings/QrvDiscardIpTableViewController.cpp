#include "QrvDiscardIpTableViewController.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

namespace quorvane {

QrvDiscardIpTableViewController::QrvDiscardIpTableViewController(QWidget *parent) : QTableView(parent) {
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    horizontalHeader()->setVisible(false);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->setVisible(false);
    constexpr int rowPadding = 8;
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + rowPadding);
    setAccessibleName(tr("Discarded IP addresses"));
}

void QrvDiscardIpTableViewController::setDataSource(QrvTableDataSource *source) {
    m_dataSource = source;
    setModel(source);
}

void QrvDiscardIpTableViewController::addRow(const QString &row) {
    if (m_dataSource != nullptr) {
        m_dataSource->addRow(row);
    }
}

int QrvDiscardIpTableViewController::selectedRow() const {
    const QModelIndexList selected = selectionModel() ? selectionModel()->selectedRows() : QModelIndexList();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void QrvDiscardIpTableViewController::deleteSelectedRow() {
    if (m_dataSource != nullptr) {
        m_dataSource->deleteRow(selectedRow());
    }
}

void QrvDiscardIpTableViewController::clearAll() {
    if (m_dataSource != nullptr) {
        m_dataSource->deleteAll();
    }
}

bool QrvDiscardIpTableViewController::hasRow(const QString &row) const {
    return m_dataSource != nullptr && m_dataSource->hasRow(row);
}

QStringList QrvDiscardIpTableViewController::getRowData() const {
    return m_dataSource != nullptr ? m_dataSource->rowsData() : QStringList();
}

void QrvDiscardIpTableViewController::copySelectedRow() const {
    if (const int row = selectedRow(); row >= 0) {
        QGuiApplication::clipboard()->setText(m_dataSource->rowsData().at(row));
    }
}

void QrvDiscardIpTableViewController::keyPressEvent(QKeyEvent *event) {
    if (event->matches(QKeySequence::Copy)) {
        copySelectedRow();
    } else if (event->key() == Qt::Key_Delete) {
        Q_EMIT deletePressed();
    } else {
        QTableView::keyPressEvent(event);
    }
}

void QrvDiscardIpTableViewController::setEmptyHint(const QString &text) {
    m_hint = text;
    setAccessibleDescription(text);
    viewport()->update();
}

void QrvDiscardIpTableViewController::paintEvent(QPaintEvent *event) {
    QTableView::paintEvent(event);
    if (m_dataSource != nullptr && m_dataSource->rowCount() > 0) {
        return;
    }
    constexpr int margin = 12;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), m_hint);
}

} // namespace quorvane

#include "SettingsWindow.h"

#include "PaneGeometry.h"
#include "SettingsToolbar.h"
#include "frontend/ui/shared/ScreenRoom.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "ui_Settings.h"

#include <QCloseEvent>
#include <QScrollArea>
#include <algorithm>

namespace quorvane {

namespace {

/// The widgets of the part that accept the keyboard focus, in the order of the layout.
QList<QWidget *> focusableWidgets(const QWidget &part) {
    QList<QWidget *> widgets;
    for (QWidget *next = part.nextInFocusChain(); next != nullptr && next != &part;
         next = next->nextInFocusChain()) {
        if (part.isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0) {
            widgets.append(next);
        }
    }
    return widgets;
}

} // namespace

SettingsWindow::SettingsWindow(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::Settings>()) {
    m_ui->setupUi(this);
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                   Qt::WindowMinimizeButtonHint);
    m_ui->contentView->installEventFilter(this);
    m_scroll = new QScrollArea(m_ui->contentView);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // the bar covers a part of the margin
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->hide();
    connect(m_ui->settingsToolbar, &SettingsToolbar::toolbarItemPressed, this,
            &SettingsWindow::toolbarItemPressed);
    connect(m_ui->buttonOk, &QPushButton::clicked, this, &SettingsWindow::okPressed);
    connect(m_ui->buttonCancel, &QPushButton::clicked, this, &SettingsWindow::cancelPressed);
    connect(m_ui->buttonApply, &QPushButton::clicked, this, &SettingsWindow::applyPressed);
    connect(m_ui->buttonOurWebsite, &QPushButton::clicked, this, &SettingsWindow::websitePressed);
}

SettingsWindow::~SettingsWindow() = default;

SettingsToolbar &SettingsWindow::toolbar() const {
    return *m_ui->settingsToolbar;
}

void SettingsWindow::addPane(QWidget *pane, const QString &identifier) {
    pane->setParent(m_ui->contentView);
    pane->hide();
    pane->installEventFilter(this);
    m_panes.append(pane);
    if (!identifier.isEmpty()) {
        m_paneOf.insert(identifier, pane);
    }
}

void SettingsWindow::finish() {
    m_ui->settingsToolbar->showDefaultItems();
    m_paneWidth = std::max(m_ui->settingsToolbar->sizeHint().width(), m_ui->buttonBand->sizeHint().width());
    for (const QWidget *pane : std::as_const(m_panes)) {
        m_paneWidth = std::max(m_paneWidth, pane->sizeHint().width());
    }
    resize(m_paneWidth, height());
    layout()->activate();
    orderFocus();
    const QString first = m_ui->settingsToolbar->firstToolbarItem()->objectName();
    toolbarItemPressed(first);
}

QSize SettingsWindow::sizeOf(QWidget &pane) const {
    const QLayout *inside = pane.layout();
    const int height =
        inside->hasHeightForWidth() ? inside->totalHeightForWidth(m_paneWidth) : pane.sizeHint().height();
    return {m_paneWidth, height};
}

void SettingsWindow::toolbarItemPressed(const QString &identifier) {
    QWidget *pane = m_paneOf.value(identifier, m_current);
    if (pane == nullptr) {
        return;
    }
    if (m_current != nullptr) {
        m_current->hide();
    }
    m_current = pane;
    m_ui->settingsToolbar->select(m_paneOf.key(m_current));
    fitCurrent();
    pane->show();
}

void SettingsWindow::fitCurrent() {
    layOutBand();
    m_current->resize(sizeOf(*m_current));
    const QRect frame = frameGeometry();
    const QPoint okCorner = m_ui->buttonOk->mapTo(m_ui->contentView, QPoint(0, 0));
    const PaneGeometry::Placement placement = PaneGeometry::place(
        {QRect(frame.x(), frame.y(), width(), frame.height()), m_ui->contentView->height(),
         QRect(okCorner, m_ui->buttonOk->size()), m_current->size()});
    // The frame's heights do not change, so the upper edge does not move.
    const int wanted = height() + placement.window.height() - frame.height();
    const int missing = std::max(0, wanted - roomOnScreen(*this));
    setFixedSize(width(), wanted - missing);
    layout()->activate();
    layOutBand();
    if (missing == 0) {
        stopScrolling();
        m_current->move(placement.pane);
    } else {
        scrollCurrent(QRect(placement.pane, m_current->size() - QSize(0, missing)));
    }
}

void SettingsWindow::scrollCurrent(const QRect &visiblePart) {
    if (m_scroll->widget() != m_current) {
        const bool shown = m_current->isVisibleTo(m_current->parentWidget());
        stopScrolling();
        m_scroll->setWidget(m_current);
        m_current->setVisible(shown);
    }
    m_scroll->setGeometry(visiblePart);
    m_scroll->show();
}

void SettingsWindow::stopScrolling() {
    if (QWidget *pane = m_scroll->takeWidget()) {
        const bool shown = pane == m_current;
        pane->setParent(m_ui->contentView);
        pane->setVisible(shown);
    }
    m_scroll->hide();
}

void SettingsWindow::showEvent(QShowEvent *event) {
    fitCurrent(); // the screen may be another one than before
    QDialog::showEvent(event);
}

void SettingsWindow::layOutBand() {
    const int bandHeight = m_ui->buttonBand->sizeHint().height();
    m_ui->buttonBand->setGeometry(0, m_ui->contentView->height() - bandHeight, m_ui->contentView->width(),
                                  bandHeight);
    m_ui->buttonBand->layout()->activate();
}

bool SettingsWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_ui->contentView && event->type() == QEvent::Resize) {
        layOutBand(); // a window that was resized while hidden lays out its content only when it is shown
    }
    if (watched == m_current && event->type() == QEvent::LayoutRequest &&
        sizeOf(*m_current) != m_current->size()) {
        fitCurrent(); // a text of the pane became longer or shorter
    }
    return QDialog::eventFilter(watched, event);
}

void SettingsWindow::orderFocus() {
    QList<QWidget *> order = focusableWidgets(*m_ui->settingsToolbar);
    for (const QWidget *pane : std::as_const(m_panes)) {
        order += focusableWidgets(*pane);
    }
    order += focusableWidgets(*m_ui->buttonBand);
    for (qsizetype i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void SettingsWindow::closeWindow() {
    hide();
}

void SettingsWindow::bringForward() {
    quorvane::bringForward(*this);
}

void SettingsWindow::closeEvent(QCloseEvent *event) {
    Q_EMIT closeBoxPressed();
    event->accept();
}

void SettingsWindow::reject() {
    Q_EMIT cancelPressed(); // the Escape key
}

} // namespace quorvane

#include "SettingsWindow.h"

#include "PaneGeometry.h"
#include "SettingsToolbar.h"
#include "frontend/ui/shared/Images.h"
#include "ui_Settings.h"

#include <QCloseEvent>
#include <algorithm>

namespace quorvane {

namespace {

/// The part of the window that takes the keyboard, in the order of its layout.
QList<QWidget *> keyboardStops(const QWidget &part) {
    QList<QWidget *> stops;
    for (QWidget *next = part.nextInFocusChain(); next != nullptr && next != &part;
         next = next->nextInFocusChain()) {
        if (part.isAncestorOf(next) && (next->focusPolicy() & Qt::TabFocus) != 0) {
            stops.append(next);
        }
    }
    return stops;
}

} // namespace

SettingsWindow::SettingsWindow(QWidget *parent) : QDialog(parent), ui(std::make_unique<Ui::Settings>()) {
    ui->setupUi(this);
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint |
                   Qt::WindowMinimizeButtonHint);
    setWindowIcon(Images::icon(QStringLiteral("quorvane")));
    ui->contentView->installEventFilter(this);
    connect(ui->settingsToolbar, &SettingsToolbar::toolbarItemPressed, this,
            &SettingsWindow::toolbarItemPressed);
    connect(ui->buttonOk, &QPushButton::clicked, this, &SettingsWindow::okPressed);
    connect(ui->buttonCancel, &QPushButton::clicked, this, &SettingsWindow::cancelPressed);
    connect(ui->buttonApply, &QPushButton::clicked, this, &SettingsWindow::applyPressed);
    connect(ui->buttonOurWebsite, &QPushButton::clicked, this, &SettingsWindow::websitePressed);
}

SettingsWindow::~SettingsWindow() = default;

SettingsToolbar &SettingsWindow::toolbar() const {
    return *ui->settingsToolbar;
}

void SettingsWindow::addPane(QWidget *pane, const QString &identifier) {
    pane->setParent(ui->contentView);
    pane->hide();
    pane->installEventFilter(this);
    panes.append(pane);
    if (!identifier.isEmpty()) {
        paneOf.insert(identifier, pane);
    }
}

void SettingsWindow::finish() {
    ui->settingsToolbar->showDefaultItems();
    paneWidth = std::max(ui->settingsToolbar->sizeHint().width(), ui->buttonBand->sizeHint().width());
    for (const QWidget *pane : std::as_const(panes)) {
        paneWidth = std::max(paneWidth, pane->sizeHint().width());
    }
    resize(paneWidth, height());
    layout()->activate();
    orderFocus();
    const QString first = ui->settingsToolbar->firstToolbarItem()->objectName();
    toolbarItemPressed(first);
}

QSize SettingsWindow::sizeOf(QWidget &pane) const {
    const QLayout *inside = pane.layout();
    const int height =
        inside->hasHeightForWidth() ? inside->totalHeightForWidth(paneWidth) : pane.sizeHint().height();
    return {paneWidth, height};
}

void SettingsWindow::toolbarItemPressed(const QString &identifier) {
    QWidget *pane = paneOf.value(identifier, current);
    if (pane == nullptr) {
        return;
    }
    if (current != nullptr) {
        current->hide();
    }
    current = pane;
    ui->settingsToolbar->select(paneOf.key(current));
    fitCurrent();
    pane->show();
}

void SettingsWindow::fitCurrent() {
    layOutBand();
    current->resize(sizeOf(*current));
    const QRect frame = frameGeometry();
    const QPoint okCorner = ui->buttonOk->mapTo(ui->contentView, QPoint(0, 0));
    const PaneGeometry::Placement placement =
        PaneGeometry::place({QRect(frame.x(), frame.y(), width(), frame.height()), ui->contentView->height(),
                             QRect(okCorner, ui->buttonOk->size()), current->size()});
    // The frame above and below stays, so the upper edge does too.
    setFixedSize(width(), height() + placement.window.height() - frame.height());
    layout()->activate();
    layOutBand();
    current->move(placement.pane);
}

void SettingsWindow::layOutBand() {
    const int bandHeight = ui->buttonBand->sizeHint().height();
    ui->buttonBand->setGeometry(0, ui->contentView->height() - bandHeight, ui->contentView->width(),
                                bandHeight);
    ui->buttonBand->layout()->activate();
}

bool SettingsWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == ui->contentView && event->type() == QEvent::Resize) {
        layOutBand(); // a window that was sized while hidden lays its content out only when it is shown
    }
    if (watched == current && event->type() == QEvent::LayoutRequest && sizeOf(*current) != current->size()) {
        fitCurrent(); // a longer or shorter text has come into the pane
    }
    return QDialog::eventFilter(watched, event);
}

void SettingsWindow::orderFocus() {
    QList<QWidget *> order = keyboardStops(*ui->settingsToolbar);
    for (const QWidget *pane : std::as_const(panes)) {
        order += keyboardStops(*pane);
    }
    order += keyboardStops(*ui->buttonBand);
    for (qsizetype i = 1; i < order.size(); ++i) {
        setTabOrder(order[i - 1], order[i]);
    }
}

void SettingsWindow::closeWindow() {
    hide();
}

void SettingsWindow::bringForward() {
    if (isMinimized()) {
        showNormal();
    } else {
        show();
    }
    raise();
    activateWindow();
}

void SettingsWindow::closeEvent(QCloseEvent *event) {
    Q_EMIT closeBoxPressed();
    event->accept();
}

void SettingsWindow::reject() {
    Q_EMIT cancelPressed(); // the Escape key
}

} // namespace quorvane

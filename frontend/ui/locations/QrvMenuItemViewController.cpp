#include "QrvMenuItemViewController.h"

#include "frontend/ui/shared/Images.h"
#include "ui_LocationMenuItem.h"

#include <QAction>

namespace quorvane {

namespace {

constexpr int gapBeforeGold = 5;

} // namespace

QrvMenuItemViewController::QrvMenuItemViewController()
    : rowView(std::make_unique<QrvMenuItemView>()), ui(std::make_unique<Ui::LocationMenuItem>()) {
    ui->setupUi(rowView.get());
    ui->imageFlag->clear();
    ui->imageGold->clear();
}

QrvMenuItemViewController::QrvMenuItemViewController(QAction *menuItem) : QrvMenuItemViewController() {
    rowView->setMenuItem(menuItem);
    rowView->setLabelText(ui->labelText);
    item = menuItem;
}

QrvMenuItemViewController::~QrvMenuItemViewController() = default;

QString QrvMenuItemViewController::title() const {
    return ui->labelText->text();
}

void QrvMenuItemViewController::setTitle(const QString &title) {
    ui->labelText->setText(title);
    ui->labelText->adjustSize();
    const int goldAt = ui->labelText->x() + ui->labelText->width() + gapBeforeGold;
    rowView->resize(goldAt + ui->imageGold->width(), rowView->height());
    ui->imageGold->move(goldAt, ui->imageGold->y());
}

void QrvMenuItemViewController::setGold(bool mark) {
    goldMark = mark;
    if (mark) {
        ui->imageGold->setPixmap(
            Images::pixmap(QStringLiteral("gold"), ui->imageGold->size(), rowView->devicePixelRatioF()));
    } else {
        ui->imageGold->clear();
    }
}

QPixmap QrvMenuItemViewController::flagImage() const {
    return ui->imageFlag->pixmap();
}

void QrvMenuItemViewController::setFlagImage(const QPixmap &image) {
    ui->imageFlag->setPixmap(image);
}

} // namespace quorvane

#include "QrvMenuItemViewController.h"

#include "frontend/ui/shared/Images.h"
#include "ui_LocationMenuItem.h"

#include <QAction>

namespace quorvane {

namespace {

constexpr int gapBeforeGold = 5;

} // namespace

QrvMenuItemViewController::QrvMenuItemViewController()
    : m_rowView(std::make_unique<QrvMenuItemView>()), m_ui(std::make_unique<Ui::LocationMenuItem>()) {
    m_ui->setupUi(m_rowView.get());
    m_ui->imageFlag->clear();
    m_ui->imageGold->clear();
}

QrvMenuItemViewController::QrvMenuItemViewController(QAction *menuItem) : QrvMenuItemViewController() {
    m_rowView->setMenuItem(menuItem);
    m_rowView->setLabelText(m_ui->labelText);
    m_item = menuItem;
}

QrvMenuItemViewController::~QrvMenuItemViewController() = default;

QString QrvMenuItemViewController::title() const {
    return m_ui->labelText->text();
}

void QrvMenuItemViewController::setTitle(const QString &title) {
    m_ui->labelText->setText(title);
    m_ui->labelText->adjustSize();
    const int goldAt = m_ui->labelText->x() + m_ui->labelText->width() + gapBeforeGold;
    m_rowView->resize(goldAt + m_ui->imageGold->width(), m_rowView->height());
    m_ui->imageGold->move(goldAt, m_ui->imageGold->y());
}

void QrvMenuItemViewController::setGold(bool mark) {
    m_goldMark = mark;
    if (mark) {
        m_ui->imageGold->setPixmap(
            Images::pixmap(QStringLiteral("gold"), m_ui->imageGold->size(), m_rowView->devicePixelRatioF()));
    } else {
        m_ui->imageGold->clear();
    }
}

QPixmap QrvMenuItemViewController::flagImage() const {
    return m_ui->imageFlag->pixmap();
}

void QrvMenuItemViewController::setFlagImage(const QPixmap &image) {
    m_ui->imageFlag->setPixmap(image);
}

} // namespace quorvane

#include "LocationRowDelegate.h"

#include "frontend/session/LocationList.h"
#include "frontend/ui/shared/Images.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace quorvane {

namespace {

constexpr int gapBeforeGold = 5;
constexpr int goldSide = 16;
constexpr int rowHeight = 28;

} // namespace

QRect LocationRowDelegate::goldRect(const QStyleOptionViewItem &option, const QModelIndex &index) {
    const QStyle *style = option.widget != nullptr ? option.widget->style() : QApplication::style();
    QStyleOptionViewItem row(option);
    row.features |= QStyleOptionViewItem::HasDisplay;
    row.text = index.data(Qt::DisplayRole).toString();
    if (const QIcon icon = index.data(Qt::DecorationRole).value<QIcon>(); !icon.isNull()) {
        row.features |= QStyleOptionViewItem::HasDecoration;
        row.icon = icon;
    }
    const QRect text = style->subElementRect(QStyle::SE_ItemViewItemText, &row, option.widget);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &row, option.widget) + 1;
    // Measured from the left, and mirrored where lines begin at the right.
    const int begin = QStyle::visualRect(option.direction, option.rect, text).left();
    const int at = begin + margin + row.fontMetrics.horizontalAdvance(row.text) + gapBeforeGold;
    const QRect gold(std::min(at, option.rect.right() - goldSide), option.rect.center().y() - goldSide / 2,
                     goldSide, goldSide);
    return QStyle::visualRect(option.direction, option.rect, gold);
}

void LocationRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                const QModelIndex &index) const {
    QStyledItemDelegate::paint(painter, option, index);
    if (index.data(LocationList::FullRole).toBool()) {
        Images::icon(QStringLiteral("gold")).paint(painter, goldRect(option, index));
    }
}

QSize LocationRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(std::max(size.height(), rowHeight));
    return size +
           (index.data(LocationList::FullRole).toBool() ? QSize(gapBeforeGold + goldSide, 0) : QSize(0, 0));
}

} // namespace quorvane

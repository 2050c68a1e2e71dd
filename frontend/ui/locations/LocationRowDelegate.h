#pragma once

#include <QStyledItemDelegate>

namespace quorvane {

/// Draws the entries of the location pop-up: flag, title, and the gold mark behind the title of a full
/// location. Main thread.
class LocationRowDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    /// The position of the mark in a row with this text.
    [[nodiscard]] static QRect goldRect(const QStyleOptionViewItem &option, const QModelIndex &index);
};

} // namespace quorvane

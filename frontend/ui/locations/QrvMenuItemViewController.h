#pragma once

#include <QPixmap>
#include <QPointer>
#include <QString>
#include <memory>

class QAction;

namespace quorvane {

class QrvMenuItemView;

namespace Ui {
class LocationMenuItem;
}

/// Loads a location's row and fills it: flag, title and gold mark. Owns the row; not the item. Exists for
/// QrvMenuItem, of which the program makes none. Main thread.
class QrvMenuItemViewController {
public:
    QrvMenuItemViewController();
    explicit QrvMenuItemViewController(QAction *menuItem);
    ~QrvMenuItemViewController();
    QrvMenuItemViewController(const QrvMenuItemViewController &) = delete;
    QrvMenuItemViewController &operator=(const QrvMenuItemViewController &) = delete;

    [[nodiscard]] QString title() const;
    /// Sets the row's width to that of the title and the gold mark.
    void setTitle(const QString &title);

    [[nodiscard]] bool gold() const { return m_goldMark; }

    void setGold(bool mark);

    [[nodiscard]] QPixmap flagImage() const;
    void setFlagImage(const QPixmap &image);

    [[nodiscard]] QrvMenuItemView *view() const { return m_rowView.get(); }

    [[nodiscard]] QAction *menuItem() const { return m_item; }

private:
    std::unique_ptr<QrvMenuItemView> m_rowView;
    std::unique_ptr<Ui::LocationMenuItem> m_ui;
    QPointer<QAction> m_item;
    bool m_goldMark = false;
};

} // namespace quorvane

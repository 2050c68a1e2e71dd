#pragma once

#include <QAction>
#include <QLabel>
#include <QPointer>
#include <QWidget>

class QMenu;

namespace quorvane {

/// A location's row in a menu: highlights itself under the mouse and triggers its item on a click. Neither
/// the item nor the label is owned. Exists for QrvMenuItem, of which the program makes none. Main thread.
class QrvMenuItemView final : public QWidget {
    Q_OBJECT

public:
    explicit QrvMenuItemView(QWidget *parent = nullptr);

    void setMenuItem(QAction *item);
    void setLabelText(QLabel *label);

    [[nodiscard]] QAction *menuItem() const { return m_item; }

    [[nodiscard]] QLabel *labelText() const { return m_label; }

    void mouseEntered();
    /// The next drawing is not highlighted, whatever the menu's active item is; later ones depend on the menu
    /// again.
    void mouseExited();
    /// Closes the menu and triggers the item, as choosing it with the keyboard does.
    void mouseDown();

protected:
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    [[nodiscard]] QMenu *menu() const;
    [[nodiscard]] bool isHighlighted() const;

    QPointer<QAction> m_item;
    QPointer<QLabel> m_label;
    bool m_notHighlighted = false;
};

} // namespace quorvane

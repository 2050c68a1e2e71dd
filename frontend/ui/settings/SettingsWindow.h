#pragma once

#include <QDialog>
#include <QHash>
#include <memory>

class QScrollArea;

namespace quorvane {

class SettingsToolbar;

namespace Ui {
class Settings;
}

/// The settings window: toolbar, the current pane, and the band of buttons below. Emits a signal for each
/// button; only closeWindow() and the close box close it. Main thread.
class SettingsWindow final : public QDialog {
    Q_OBJECT

public:
    explicit SettingsWindow(QWidget *parent = nullptr);
    ~SettingsWindow() override;

    /// Becomes the pane's owner. A pane without an identifier is shown by no item.
    void addPane(QWidget *pane, const QString &identifier = {});
    /// Call after the last addPane(): sets the width and the tab order, fills the toolbar and shows the first
    /// item's pane.
    void finish();

    /// Shows the pane of the toolbar item. An unknown identifier keeps the current pane.
    void toolbarItemPressed(const QString &identifier);

    /// The pane that is shown; null before finish().
    [[nodiscard]] QWidget *currentSettings() const { return m_current; }

    [[nodiscard]] SettingsToolbar &toolbar() const;
    /// Closes the window without emitting closeBoxPressed().
    void closeWindow();
    void bringForward();

Q_SIGNALS:
    void okPressed();
    void cancelPressed();
    void applyPressed();
    void closeBoxPressed();
    void websitePressed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void reject() override;

private:
    /// Sets the current pane to its preferred size, and the window to the height for it.
    void fitCurrent();
    /// Shows this part of the content at a time, on a screen without room for the whole pane.
    void scrollCurrent(const QRect &visiblePart);
    void stopScrolling();
    void layOutBand();
    void orderFocus();
    [[nodiscard]] QSize sizeOf(QWidget &pane) const;

    std::unique_ptr<Ui::Settings> m_ui;
    QList<QWidget *> m_panes;
    QHash<QString, QWidget *> m_paneOf;
    QWidget *m_current = nullptr;
    QScrollArea *m_scroll = nullptr;
    int m_paneWidth = 0;
};

} // namespace quorvane

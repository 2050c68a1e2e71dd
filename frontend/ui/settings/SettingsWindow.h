#pragma once

#include <QDialog>
#include <QHash>
#include <memory>

namespace quorvane {

class SettingsToolbar;

namespace Ui {
class Settings;
}

/// The settings window: toolbar, the current pane, and the band of buttons below. Tells what was pressed and
/// closes for closeWindow() and its close box only. Main thread.
class SettingsWindow final : public QDialog {
    Q_OBJECT

public:
    explicit SettingsWindow(QWidget *parent = nullptr);
    ~SettingsWindow() override;

    /// Takes the pane over. A pane without an identifier is shown by no item.
    void addPane(QWidget *pane, const QString &identifier = {});
    /// Call after the last addPane(): settles the width and the order of the keyboard, fills the toolbar and
    /// shows the first item's pane.
    void finish();

    /// Shows the pane of the toolbar item. Another identifier keeps the present pane.
    void toolbarItemPressed(const QString &identifier);

    /// The pane now shown; null before the first.
    [[nodiscard]] QWidget *currentSettings() const { return m_current; }

    [[nodiscard]] SettingsToolbar &toolbar() const;
    /// Closes without the close box having been pressed.
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
    void reject() override;

private:
    /// Gives the current pane the size that it wants now, and the window the height for it.
    void fitCurrent();
    void layOutBand();
    void orderFocus();
    [[nodiscard]] QSize sizeOf(QWidget &pane) const;

    std::unique_ptr<Ui::Settings> m_ui;
    QList<QWidget *> m_panes;
    QHash<QString, QWidget *> m_paneOf;
    QWidget *m_current = nullptr;
    int m_paneWidth = 0;
};

} // namespace quorvane

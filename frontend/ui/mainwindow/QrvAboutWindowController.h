#pragma once

#include <QDialog>
#include <memory>

namespace quorvane {

class QrvAPI;

namespace Ui {
class About;
}

/// The About window. A visible main window is hidden while the About window is open, and shown again
/// afterwards. Main thread.
class QrvAboutWindowController final : public QDialog {
    Q_OBJECT

public:
    /// Neither is owned; both must outlive this.
    QrvAboutWindowController(QWidget &mainWindow, QrvAPI &api);
    ~QrvAboutWindowController() override;

    void showWindow();
    void okButtonPressed();
    void urlButtonPressed();
    void copyButtonPressed();

    /// The compiler's date as the shown language writes it; in English "Dec  9 2016".
    [[nodiscard]] static QString buildDate();

protected:
    void hideEvent(QHideEvent *event) override;

private:
    [[nodiscard]] static QString copyText();
    [[nodiscard]] static QString copiedText();

    QWidget &m_mainWindow;
    QrvAPI &m_api;
    std::unique_ptr<Ui::About> m_ui;
    bool m_showMain = false;
};

} // namespace quorvane

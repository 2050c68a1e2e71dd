#pragma once

#include <QDialog>
#include <memory>

namespace quorvane {

class QrvAPI;

namespace Ui {
class About;
}

/// The About window. While it is open the main window makes room for it, and comes back afterwards if it was
/// visible before. Main thread.
class QrvAboutWindowController final : public QDialog {
    Q_OBJECT

public:
    /// Neither is owned; both must outlive this.
    QrvAboutWindowController(QWidget &mainWindow, QrvAPI &api);
    ~QrvAboutWindowController() override;

    void showWindow();
    void okButtonPressed();
    void urlButtonPressed();

    /// The compiler's date, "Dec  9 2016".
    [[nodiscard]] static QString buildDate();

protected:
    void hideEvent(QHideEvent *event) override;

private:
    QWidget &m_mainWindow;
    QrvAPI &m_api;
    std::unique_ptr<Ui::About> m_ui;
    bool m_showMain = false;
};

} // namespace quorvane

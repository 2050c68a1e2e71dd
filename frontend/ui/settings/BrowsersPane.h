#pragma once

#include <QWidget>
#include <memory>

namespace quorvane {

namespace Ui {
class SettingsBrowsers;
}

/// The pane of browsers. No toolbar item shows it, and its boxes have no effect. Main thread.
class BrowsersPane final : public QWidget {
    Q_OBJECT

public:
    explicit BrowsersPane(QWidget *parent = nullptr);
    ~BrowsersPane() override;

private:
    std::unique_ptr<Ui::SettingsBrowsers> m_ui;
};

} // namespace quorvane

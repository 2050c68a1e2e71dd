#include "BrowsersPane.h"

#include "ui_SettingsBrowsers.h"

namespace quorvane {

BrowsersPane::BrowsersPane(QWidget *parent) : QWidget(parent), ui(std::make_unique<Ui::SettingsBrowsers>()) {
    ui->setupUi(this);
}

BrowsersPane::~BrowsersPane() = default;

} // namespace quorvane

#include "BrowsersPane.h"

#include "ui_SettingsBrowsers.h"

namespace quorvane {

BrowsersPane::BrowsersPane(QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::SettingsBrowsers>()) {
    m_ui->setupUi(this);
}

BrowsersPane::~BrowsersPane() = default;

} // namespace quorvane

#include "AdvancedPane.h"

#include "DefaultsBinding.h"
#include "frontend/session/SettingsDefaults.h"
#include "platform/Platform.h"
#include "platform/UserDefaultsController.h"
#include "ui_SettingsAdvanced.h"

#include <QButtonGroup>

namespace quorvane {

namespace {

constexpr int modeOwn = 0;

} // namespace

AdvancedPane::AdvancedPane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), ui(std::make_unique<Ui::SettingsAdvanced>()), matrixUserAgent(new QButtonGroup(this)) {
    ui->setupUi(this);
    matrixUserAgent->setObjectName(QStringLiteral("matrixUserAgent"));
    matrixUserAgent->addButton(ui->userAgentOwn, modeOwn);
    matrixUserAgent->addButton(ui->userAgentChosen, modeChosen);
    binding.bindTag(*matrixUserAgent, SettingsDefaults::modeUserAgent());
    binding.bindText(*ui->comboboxUserAgent, SettingsDefaults::userAgent());
    binding.bindInteger(*ui->checkboxHideMyReferrerHeader, SettingsDefaults::hideMyReferrerHeader());
    connect(matrixUserAgent, &QButtonGroup::idClicked, this, &AdvancedPane::matrixModeUserAgentPressed);
}

AdvancedPane::~AdvancedPane() = default;

void AdvancedPane::reassignControls() {
    const qint64 mode =
        platform::Platform::current().userDefaults->integer(SettingsDefaults::modeUserAgent());
    ui->comboboxUserAgent->setEnabled(mode == modeChosen);
}

bool AdvancedPane::isUserAgentComboEnabled() const {
    return matrixUserAgent->checkedId() == modeChosen;
}

void AdvancedPane::matrixModeUserAgentPressed() {
    ui->comboboxUserAgent->setEnabled(isUserAgentComboEnabled());
}

std::optional<int> AdvancedPane::selectedMode() const {
    const int tag = matrixUserAgent->checkedId();
    return tag < 0 ? std::nullopt : std::optional(tag);
}

QString AdvancedPane::selectedUserAgent() const {
    return ui->comboboxUserAgent->currentIndex() < 0 ? QStringLiteral("")
                                                     : ui->comboboxUserAgent->currentText();
}

bool AdvancedPane::hidesReferrer() const {
    return ui->checkboxHideMyReferrerHeader->isChecked();
}

} // namespace quorvane

#include "AdvancedPane.h"

#include "DefaultsBinding.h"
#include "ui_SettingsAdvanced.h"

#include <QButtonGroup>

namespace quorvane {

namespace {

constexpr int modeOwn = 0;

} // namespace

AdvancedPane::AdvancedPane(DefaultsBinding &binding, QWidget *parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::SettingsAdvanced>()),
      m_matrixUserAgent(new QButtonGroup(this)) {
    m_ui->setupUi(this);
    m_matrixUserAgent->setObjectName(QStringLiteral("matrixUserAgent"));
    m_matrixUserAgent->addButton(m_ui->userAgentOwn, modeOwn);
    m_matrixUserAgent->addButton(m_ui->userAgentChosen, modeChosen);
    binding.bindTag(*m_matrixUserAgent, Preference::ModeUserAgent);
    binding.bindText(*m_ui->comboboxUserAgent, Preference::UserAgent);
    binding.bindInteger(*m_ui->checkboxHideMyReferrerHeader, Preference::HideMyReferrerHeader);
    connect(m_matrixUserAgent, &QButtonGroup::idClicked, this, &AdvancedPane::matrixModeUserAgentPressed);
}

AdvancedPane::~AdvancedPane() = default;

void AdvancedPane::reassignControls() {
    const qint64 mode = Preferences::editedInteger(Preference::ModeUserAgent);
    m_ui->comboboxUserAgent->setEnabled(mode == modeChosen);
}

bool AdvancedPane::isUserAgentComboEnabled() const {
    return m_matrixUserAgent->checkedId() == modeChosen;
}

void AdvancedPane::matrixModeUserAgentPressed() {
    m_ui->comboboxUserAgent->setEnabled(isUserAgentComboEnabled());
}

std::optional<int> AdvancedPane::selectedMode() const {
    const int tag = m_matrixUserAgent->checkedId();
    return tag < 0 ? std::nullopt : std::optional(tag);
}

QString AdvancedPane::selectedUserAgent() const {
    return m_ui->comboboxUserAgent->currentIndex() < 0 ? QStringLiteral("")
                                                       : m_ui->comboboxUserAgent->currentText();
}

bool AdvancedPane::hidesReferrer() const {
    return m_ui->checkboxHideMyReferrerHeader->isChecked();
}

} // namespace quorvane

#include "QrvAboutWindowController.h"

#include "frontend/api/QrvAPI.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/WebPages.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "ui_About.h"

#include <QHideEvent>

namespace quorvane {

namespace {

constexpr QSize pictureSize(96, 96);

} // namespace

QrvAboutWindowController::QrvAboutWindowController(QWidget &mainWindow, QrvAPI &api)
    : m_mainWindow(mainWindow), m_api(api), m_ui(std::make_unique<Ui::About>()) {
    m_ui->setupUi(this);
    setWindowFlag(Qt::WindowStaysOnTopHint, true); // above the other windows
    m_ui->labelVersion->setText(
        tr("%1 built %2").arg(platform::Platform::current().bundle->version(), buildDate()));
    m_ui->picture->setPixmap(Images::pixmap(QStringLiteral("quorvane"), pictureSize, devicePixelRatioF()));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    connect(m_ui->okButton, &QPushButton::clicked, this, &QrvAboutWindowController::okButtonPressed);
    connect(m_ui->urlButton, &QPushButton::clicked, this, &QrvAboutWindowController::urlButtonPressed);
}

QrvAboutWindowController::~QrvAboutWindowController() = default;

QString QrvAboutWindowController::buildDate() {
    return QStringLiteral(__DATE__);
}

void QrvAboutWindowController::showWindow() {
    if (m_mainWindow.isVisible()) {
        m_showMain = true;
        m_mainWindow.hide();
    }
    m_ui->okButton->setFocus();
    bringForward(*this);
}

void QrvAboutWindowController::okButtonPressed() {
    close();
}

void QrvAboutWindowController::urlButtonPressed() {
    platform::Platform::current().workspace->openUrl(WebPages::root(m_api.macSerial()));
}

void QrvAboutWindowController::hideEvent(QHideEvent *event) {
    QDialog::hideEvent(event);
    // A window that the desktop only hid is not closed.
    if (m_showMain && !event->spontaneous()) {
        m_showMain = false;
        bringForward(m_mainWindow);
    }
}

} // namespace quorvane

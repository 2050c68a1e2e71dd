#include "QrvAboutWindowController.h"

#include "frontend/api/QrvAPI.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/WebPages.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "ui_About.h"

#include <QHideEvent>

namespace quorvane {

namespace {

constexpr QSize pictureSize(96, 96);

} // namespace

QrvAboutWindowController::QrvAboutWindowController(QWidget &window, QrvAPI &client)
    : mainWindow(window), api(client), ui(std::make_unique<Ui::About>()) {
    ui->setupUi(this);
    setWindowFlag(Qt::WindowStaysOnTopHint, true); // it floats above the other windows
    ui->labelVersion->setText(
        tr("%1 built %2").arg(platform::Platform::current().bundle->version(), buildDate()));
    ui->picture->setPixmap(Images::pixmap(QStringLiteral("quorvane"), pictureSize, devicePixelRatioF()));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    connect(ui->okButton, &QPushButton::clicked, this, &QrvAboutWindowController::okButtonPressed);
    connect(ui->urlButton, &QPushButton::clicked, this, &QrvAboutWindowController::urlButtonPressed);
}

QrvAboutWindowController::~QrvAboutWindowController() = default;

QString QrvAboutWindowController::buildDate() {
    return QStringLiteral(__DATE__);
}

void QrvAboutWindowController::showWindow() {
    if (mainWindow.isVisible()) {
        showMain = true;
        mainWindow.hide();
    }
    ui->okButton->setFocus();
    show();
    raise();
    activateWindow();
}

void QrvAboutWindowController::okButtonPressed() {
    close();
}

void QrvAboutWindowController::urlButtonPressed() {
    platform::Platform::current().workspace->openUrl(WebPages::root(api.macSerial()));
}

void QrvAboutWindowController::hideEvent(QHideEvent *event) {
    QDialog::hideEvent(event);
    // A window that the desktop merely put away is not closed.
    if (showMain && !event->spontaneous()) {
        showMain = false;
        mainWindow.show();
        mainWindow.raise();
        mainWindow.activateWindow();
    }
}

} // namespace quorvane

#include "QrvAboutWindowController.h"

#include "frontend/api/QrvAPI.h"
#include "frontend/session/DiagnosticReport.h"
#include "frontend/support/Translations.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/WebPages.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "platform/Platform.h"
#include "ui_About.h"

#include <QClipboard>
#include <QDate>
#include <QGuiApplication>
#include <QHideEvent>
#include <QLocale>

#include <algorithm>

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
    connect(m_ui->helpButton, &QPushButton::clicked, this, &WebPages::openGuide);
    connect(m_ui->copyButton, &QPushButton::clicked, this, &QrvAboutWindowController::copyButtonPressed);
    // The longer one of the two texts decides, so that nothing moves when it changes.
    m_ui->copyButton->setText(copiedText());
    const int copiedWidth = m_ui->copyButton->sizeHint().width();
    m_ui->copyButton->setText(copyText());
    m_ui->copyButton->setMinimumWidth(std::max(copiedWidth, m_ui->copyButton->sizeHint().width()));
}

QrvAboutWindowController::~QrvAboutWindowController() = default;

QString QrvAboutWindowController::buildDate() {
    const QString compiled = QStringLiteral(__DATE__);
    const QLocale shown = Translations::shown();
    if (shown == QLocale::c()) {
        return compiled;
    }
    const QDate date = QLocale::c().toDate(compiled.simplified(), QStringLiteral("MMM d yyyy"));
    return shown.toString(date, QLocale::ShortFormat);
}

void QrvAboutWindowController::showWindow() {
    if (m_mainWindow.isVisible()) {
        m_showMain = true;
        m_mainWindow.hide();
    }
    m_ui->copyButton->setText(copyText());
    m_ui->okButton->setFocus();
    bringForward(*this);
}

QString QrvAboutWindowController::copyText() {
    return QCoreApplication::translate("quorvane::About", "Copy Diagnostics");
}

QString QrvAboutWindowController::copiedText() {
    return tr("Diagnostics Copied");
}

void QrvAboutWindowController::copyButtonPressed() {
    QGuiApplication::clipboard()->setText(DiagnosticReport::text());
    m_ui->copyButton->setText(copiedText());
}

void QrvAboutWindowController::okButtonPressed() {
    close();
}

void QrvAboutWindowController::urlButtonPressed() {
    WebPages::open(WebPages::root(m_api.macSerial()));
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

#include "MainWindow.h"

#include "frontend/session/LocationChooser.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/IntervalField.h"
#include "frontend/ui/shared/ScreenRoom.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "platform/Appearance.h"
#include "platform/Platform.h"
#include "ui_MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>
#include <algorithm>

namespace quorvane {

namespace {

constexpr int windowWidth = 400;
/// No button to maximise, which a window of one width has no use for.
constexpr Qt::WindowFlags windowButtons = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                          Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint |
                                          Qt::WindowCloseButtonHint;
constexpr QSize stateImageSize(112, 112);
constexpr QSize smallStateImageSize(56, 56);
/// A screen of less height than this, in logical pixels, gets the compact window.
constexpr int lowScreen = 700;
constexpr QSize flagSize(28, 21);
constexpr int millisecondsPerSecond = 1000;

QString styleOf(Tone tone) {
    switch (tone) {
    case Tone::Warning:
        // On a ground of its own: the warning red cannot be read on the window's grey.
        return QStringLiteral("color: rgb(223, 46, 51); background: rgb(2, 2, 2); border-radius: 6px; "
                              "padding: 4px 8px;");
    case Tone::Quiet:
        return QStringLiteral("color: rgb(211, 211, 211);");
    case Tone::Plain:
        return QStringLiteral("color: white;");
    }
    return {};
}

void keepPlaceWhenHidden(QWidget *widget) {
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

void drawLine(QLabel *label, const DisplayState::Line &line, const DisplayState::Line &before) {
    if (line.text != before.text && !line.text.isNull()) {
        label->setText(line.text);
    }
    // A style takes time, also for a line that the user does not see.
    if (const QString style = styleOf(line.tone); line.visible && label->styleSheet() != style) {
        label->setStyleSheet(style);
    }
    label->setVisible(line.visible);
}

} // namespace

MainWindow::MainWindow(LocationChooser &chooser, QWidget *parent)
    : QMainWindow(parent, windowButtons), m_ui(std::make_unique<Ui::MainWindow>()) {
    m_ui->setupUi(this);
    m_ui->locationPane->setChooser(chooser);
    m_ui->viewSpinWeel->setRange(0, 100);
    setFixedWidth(windowWidth);
    m_ui->backgroundView->setFixedWidth(windowWidth); // however long a location's name is
    m_ui->backgroundView->installEventFilter(this);
    m_ui->rotationFold->hide();
    // The view draws its ground itself; filled before, too, they would cover the window, whose first painting
    // is awaited.
    m_ui->scroll->viewport()->setAutoFillBackground(false);
    m_ui->backgroundView->setAutoFillBackground(false);
    m_ui->segmentTcp->setChecked(true);
    auto *quit = new QAction(tr("Quit Quorvane"), this);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    addAction(quit);
    connect(quit, &QAction::triggered, this, &MainWindow::quitRequested);
    connectControls();
    for (QLabel *line : {m_ui->fieldLine3, m_ui->fieldLine4, m_ui->fieldLine22, m_ui->fieldLine21}) {
        line->setVisible(false);
    }
    m_ui->lockLine->setVisible(false);
    m_eachSecond.setInterval(millisecondsPerSecond);
    connect(&m_eachSecond, &QTimer::timeout, this, &MainWindow::showSeconds);
    // Controls keep their place while they are hidden, so that the others do not move.
    for (QWidget *widget :
         std::initializer_list<QWidget *>{m_ui->changeIpButton, m_ui->discardIpButton, m_ui->viewSpinWeel}) {
        keepPlaceWhenHidden(widget);
    }
}

MainWindow::~MainWindow() {
    // The field loses the focus, which ends its editing, when only the base class is left.
    m_ui->fieldChangeIpInterval->disconnect(this);
}

void MainWindow::connectControls() {
    connect(m_ui->buttonQuorvane, &QPushButton::clicked, this, &MainWindow::hideButtonPressed);
    connect(m_ui->changeIpButton, &QPushButton::clicked, this, &MainWindow::changeIpPressed);
    connect(m_ui->discardIpButton, &QPushButton::clicked, this, &MainWindow::discardIpPressed);
    connect(m_ui->liftButton, &QPushButton::clicked, this, &MainWindow::liftLockPressed);
    connect(m_ui->checkboxChangeIpInterval, &QCheckBox::clicked, this, &MainWindow::changeEverySwitched);
    connect(m_ui->checkboxRequireUS, &QCheckBox::clicked, this, &MainWindow::requireUSSwitched);
    connect(m_ui->IPNonRepeat, &QCheckBox::clicked, this, &MainWindow::nonRepeatSwitched);
    m_interval = new IntervalField(*m_ui->fieldChangeIpInterval, *m_ui->stepperChangeIpInterval,
                                   IntervalField::Zero::BecomesOne, this);
    connect(m_interval, &IntervalField::entered, this, &MainWindow::intervalEntered);
    const auto nameUnit = [this] {
        m_ui->minutesLabel->setText(tr("minutes", "behind their number", m_interval->minutes()));
    };
    nameUnit();
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::textChanged, this, nameUnit);
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::returnPressed, this, &MainWindow::intervalChanged);
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::editingFinished, this, &MainWindow::endIntervalEditing);
    connect(m_ui->rotationFold, &QToolButton::toggled, this, &MainWindow::unfoldRotation);
    connect(m_ui->quitButton, &QPushButton::clicked, this, &MainWindow::quitRequested);
    connect(m_ui->websiteButton, &QPushButton::clicked, this, &MainWindow::websitePressed);
    connect(m_ui->aboutButton, &QPushButton::clicked, this, &MainWindow::aboutPressed);
    connect(m_ui->advancedSettingsButton, &QPushButton::clicked, this, &MainWindow::advancedSettingsPressed);
    connect(m_ui->segmentTcp, &QRadioButton::clicked, this, [this] { Q_EMIT transportChosen(0); });
    connect(m_ui->segmentUdp, &QRadioButton::clicked, this, [this] { Q_EMIT transportChosen(1); });
}

void MainWindow::mousePressEvent(QMouseEvent *event) {
    endEditing(); // a click on the background
    QMainWindow::mousePressEvent(event);
}

void MainWindow::endEditing() {
    if (QWidget *focus = focusWidget()) {
        focus->clearFocus();
    }
}

void MainWindow::intervalChanged() {
    m_interval->intervalChanged();
}

void MainWindow::endIntervalEditing() {
    if (m_ui->fieldChangeIpInterval->isModified()) { // not only its text set from code
        intervalChanged();                           // first, so that no 0 is stored
        controlTextEndEditing();
        m_ui->fieldChangeIpInterval->setModified(false);
    }
}

void MainWindow::controlTextEndEditing() {
    m_interval->controlTextEndEditing();
}

void MainWindow::keyPressEvent(QKeyEvent *event) {
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool edits = qobject_cast<QLineEdit *>(focusWidget()) != nullptr;
    if (edits && (enters || event->key() == Qt::Key_Escape)) {
        endEditing();
    } else if (enters) {
        auto *button = qobject_cast<QPushButton *>(focusWidget());
        (button != nullptr ? button : m_ui->buttonQuorvane)->click();
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void MainWindow::draw(const DisplayState &state) {
    drawLine(m_ui->fieldLine1, state.line1, m_shown.line1);
    drawLine(m_ui->fieldLine21, state.line21, m_shown.line21);
    drawLine(m_ui->fieldLine22, state.line22, m_shown.line22);
    drawLine(m_ui->fieldLine3, state.line3, m_shown.line3);
    drawLine(m_ui->fieldLine4, state.line4, m_shown.line4);
    drawLine(m_ui->addressNotice, state.addressNotice, m_shown.addressNotice);
    drawStep(state);
    drawLine(m_ui->lockNotice, state.lockNotice, m_shown.lockNotice);
    m_ui->lockLine->setVisible(state.lockNotice.visible);
    m_ui->liftButton->setVisible(state.liftVisible);
    if (m_ui->viewCurrentIP->stringValue() != state.currentIp) {
        m_ui->viewCurrentIP->setStringValue(state.currentIp);
    }
    m_ui->buttonQuorvane->setText(state.hideButton.title);
    m_ui->buttonQuorvane->setEnabled(state.hideButton.enabled);
    m_ui->buttonQuorvane->setChecked(state.hideButton.on);
    m_ui->buttonQuorvane->setAccessibleDescription(state.hideButton.hint);
    m_ui->advancedSettingsButton->setEnabled(state.advancedEnabled);
    m_ui->changeIpButton->setVisible(state.changeIpVisible);
    m_ui->discardIpButton->setVisible(state.discardIpVisible);
    // With an upper end of 0 the bar moves by itself.
    const bool moves = !platform::Platform::current().appearance->current().reducesMotion;
    m_ui->viewSpinWeel->setRange(0, state.spinning && moves ? 0 : 100);
    m_ui->viewSpinWeel->setValue(50);
    m_ui->viewSpinWeel->setVisible(state.spinning);
    if (state.interval != m_shown.interval) {
        m_interval->show(state.interval);
    }
    m_interval->setEnabled(state.changesAutomatically);
    m_ui->checkboxChangeIpInterval->setChecked(state.changesAutomatically);
    m_ui->checkboxRequireUS->setChecked(state.requiresUs);
    drawImages(state);
    m_shown = state;
}

void MainWindow::drawStep(const DisplayState &state) {
    drawLine(m_ui->stepLine, state.stepLine, m_shown.stepLine);
    if (state.timed == m_shown.timed && state.stepLine == m_shown.stepLine) {
        return;
    }
    m_ui->stepLine->setAccessibleName(state.stepLine.text);
    if (!state.timed) {
        m_eachSecond.stop();
        m_search.invalidate();
        return;
    }
    if (!m_search.isValid()) {
        m_search.start();
        m_eachSecond.start();
    }
    showSeconds();
}

void MainWindow::showSeconds() {
    const qint64 seconds = m_search.elapsed() / millisecondsPerSecond;
    if (seconds > 0) {
        m_ui->stepLine->setText(
            tr("%1 (%2 s)").arg(m_ui->stepLine->accessibleName()).arg(locale().toString(seconds)));
    }
}

void MainWindow::drawStateImage(const QString &name) {
    const QSize size = m_compact ? smallStateImageSize : stateImageSize;
    m_ui->imageAppState->setPixmap(Images::pixmap(name, size, devicePixelRatioF()));
}

void MainWindow::drawImages(const DisplayState &state) {
    if (state.stateImage != m_shown.stateImage) {
        drawStateImage(state.stateImage);
        m_ui->imageAppState->setAccessibleName(stateDescription(state.look));
    }
    if (state.flagImage != m_shown.flagImage) {
        m_ui->imageCountry->setPixmap(Images::pixmap(state.flagImage, flagSize, devicePixelRatioF()));
        m_ui->imageCountry->setAccessibleName(tr("Flag: %1").arg(state.flagImage.toUpper()));
    }
    m_ui->imageCountry->setVisible(state.flagVisible);
}

QString MainWindow::stateDescription(Look look) {
    switch (look) {
    case Look::NotHidden:
        return tr("IP not hidden");
    case Look::Searching:
        return tr("Searching");
    case Look::Hidden:
        return tr("IP hidden");
    }
    return {};
}

QrvLocationPaneController &MainWindow::locationPane() const {
    return *m_ui->locationPane;
}

void MainWindow::setNonRepeat(bool on) {
    m_ui->IPNonRepeat->setChecked(on);
}

int MainWindow::transportIndex() const {
    return m_ui->segmentUdp->isChecked() ? 1 : 0;
}

void MainWindow::setTransportIndex(int index) {
    (index == 1 ? m_ui->segmentUdp : m_ui->segmentTcp)->setChecked(true);
}

void MainWindow::raiseFloatingLevel() {
    setFloating(*this, true);
}

void MainWindow::dropFloatingLevel() {
    setFloating(*this, false);
}

void MainWindow::setReachableByTray(bool reachable) {
    if (reachable == m_reachableByTray) {
        return;
    }
    m_reachableByTray = reachable;
    m_ui->quitButton->setVisible(!reachable); // else the tray's menu has it
    if (m_inBackground) {
        sendToBackground();
    }
}

void MainWindow::sendToBackground() {
    if (m_reachableByTray) {
        hide();
    } else {
        // A window that computes its size while it is being shown would not be minimised.
        ensurePolished();
        fitToScreen();
        resize(size());
        showMinimized();
    }
    // Not before: while it is being hidden, Wayland still reports it as visible and active, as if it had been
    // restored.
    m_inBackground = true;
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == m_ui->backgroundView && event->type() == QEvent::LayoutRequest && !isMinimized()) {
        fitHeight();
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::showEvent(QShowEvent *event) {
    if (!isMinimized()) {
        fitToScreen();
    }
    connect(windowHandle(), &QWindow::screenChanged, this, &MainWindow::fitToScreen, Qt::UniqueConnection);
    QMainWindow::showEvent(event);
}

void MainWindow::fitToScreen() {
    const QScreen *current = screen();
    disconnect(m_screenChange);
    m_screenChange = connect(current, &QScreen::availableGeometryChanged, this, &MainWindow::fitToScreen);
    const bool compact = current->availableGeometry().height() < lowScreen;
    if (compact != m_compact) {
        m_compact = compact;
        m_ui->rotationFold->setVisible(compact);
        unfoldRotation(m_ui->rotationFold->isChecked());
        const QSize &size = compact ? smallStateImageSize : stateImageSize;
        m_ui->imageAppState->setMinimumHeight(size.height() + (compact ? 0 : 8));
        m_ui->column->setContentsMargins(24, compact ? 8 : 20, 24, compact ? 8 : 16);
        m_ui->column->setSpacing(compact ? 4 : 8);
        drawStateImage(m_shown.stateImage);
    }
    fitHeight();
}

void MainWindow::unfoldRotation(bool unfolded) {
    const auto forwards = isRightToLeft() ? Qt::LeftArrow : Qt::RightArrow;
    m_ui->rotationFold->setArrowType(unfolded ? Qt::DownArrow : forwards);
    m_ui->rotationPart->setVisible(!m_compact || unfolded);
}

void MainWindow::fitHeight() {
    QLayout &column = *m_ui->column;
    const int needed = std::max(column.totalHeightForWidth(windowWidth), column.totalMinimumSize().height());
    setFixedHeight(std::min(needed, roomOnScreen(*this)));
}

void MainWindow::bringForward() {
    m_inBackground = false;
    quorvane::bringForward(*this);
}

void MainWindow::closeEvent(QCloseEvent *event) {
    event->ignore();
    sendToBackground();
}

void MainWindow::changeEvent(QEvent *event) {
    // The user restored it from the task bar. Wayland reports a minimised window as a usual one; there only
    // the focus shows that it was restored.
    const bool reportsMinimised = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    if (isVisible() && !isMinimized() &&
        ((event->type() == QEvent::WindowStateChange && reportsMinimised) ||
         (event->type() == QEvent::ActivationChange && isActiveWindow()))) {
        m_inBackground = false;
    }
    if (event->type() == QEvent::WindowStateChange && !isMinimized()) {
        fitToScreen(); // what is shown may have changed meanwhile
    }
    QMainWindow::changeEvent(event);
}

} // namespace quorvane

#include "MainWindow.h"

#include "frontend/session/LocationChooser.h"
#include "frontend/ui/shared/Images.h"
#include "frontend/ui/shared/IntervalField.h"
#include "frontend/ui/shared/WindowOrder.h"
#include "ui_MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QWindow>

namespace quorvane {

namespace {

constexpr QSize stateImageSize(112, 112);
constexpr QSize flagSize(28, 21);
constexpr QSize windowIconSize(64, 64);

QString styleOf(Tone tone) {
    switch (tone) {
    case Tone::Warning:
        return QStringLiteral("color: rgb(223, 46, 51);");
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
    if (line.tone != before.tone || label->styleSheet().isEmpty()) {
        label->setStyleSheet(styleOf(line.tone));
    }
    label->setVisible(line.visible);
}

} // namespace

MainWindow::MainWindow(LocationChooser &chooser, QWidget *parent)
    : QMainWindow(parent), m_ui(std::make_unique<Ui::MainWindow>()) {
    m_ui->setupUi(this);
    m_ui->locationPane->setChooser(chooser);
    m_ui->viewSpinWeel->setRange(0, 100);
    setFixedWidth(400);
    // Only one size, because the window system receives every size of the icon.
    setWindowIcon(QIcon(Images::pixmap(QStringLiteral("quorvane"), windowIconSize, devicePixelRatioF())));
    m_ui->segmentTcp->setChecked(true);
    auto *quit = new QAction(tr("Quit Quorvane"), this);
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    addAction(quit);
    connect(quit, &QAction::triggered, this, &MainWindow::quitRequested);
    connectControls();
    for (QLabel *line : {m_ui->fieldLine3, m_ui->fieldLine4, m_ui->fieldLine22, m_ui->fieldLine21}) {
        line->setVisible(false);
    }
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
    connect(m_ui->checkboxChangeIpInterval, &QCheckBox::clicked, this, &MainWindow::changeEverySwitched);
    connect(m_ui->checkboxRequireUS, &QCheckBox::clicked, this, &MainWindow::requireUSSwitched);
    connect(m_ui->IPNonRepeat, &QCheckBox::clicked, this, &MainWindow::nonRepeatSwitched);
    m_interval = new IntervalField(*m_ui->fieldChangeIpInterval, *m_ui->stepperChangeIpInterval,
                                   IntervalField::Zero::BecomesOne, this);
    connect(m_interval, &IntervalField::entered, this, &MainWindow::intervalEntered);
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::returnPressed, this, &MainWindow::intervalChanged);
    connect(m_ui->fieldChangeIpInterval, &QLineEdit::editingFinished, this, &MainWindow::endIntervalEditing);
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
    if (m_ui->viewCurrentIP->stringValue() != state.currentIp) {
        m_ui->viewCurrentIP->setStringValue(state.currentIp);
    }
    m_ui->buttonQuorvane->setText(state.hideButton.title);
    m_ui->buttonQuorvane->setEnabled(state.hideButton.enabled);
    m_ui->buttonQuorvane->setChecked(state.hideButton.on);
    m_ui->advancedSettingsButton->setEnabled(state.advancedEnabled);
    m_ui->changeIpButton->setVisible(state.changeIpVisible);
    m_ui->discardIpButton->setVisible(state.discardIpVisible);
    m_ui->viewSpinWeel->setRange(0, state.spinning ? 0 : 100);
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

void MainWindow::drawImages(const DisplayState &state) {
    if (state.stateImage != m_shown.stateImage) {
        m_ui->imageAppState->setPixmap(Images::pixmap(state.stateImage, stateImageSize, devicePixelRatioF()));
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
    setWindowFlag(Qt::WindowStaysOnTopHint, true);
}

void MainWindow::dropFloatingLevel() {
    // Set on the window handle: the widget's own setter would create a new window and lose the focus.
    if (QWindow *handle = windowHandle()) {
        handle->setFlag(Qt::WindowStaysOnTopHint, false);
        // The widget's flags too, so that a window created later does not float.
        overrideWindowFlags(windowFlags() & ~Qt::WindowStaysOnTopHint);
    } else {
        setWindowFlag(Qt::WindowStaysOnTopHint, false);
    }
}

void MainWindow::setReachableByTray(bool reachable) {
    if (reachable == m_reachableByTray) {
        return;
    }
    m_reachableByTray = reachable;
    if (m_inBackground) {
        hideOrMinimise();
    }
}

void MainWindow::sendToBackground() {
    m_inBackground = true;
    hideOrMinimise();
}

void MainWindow::hideOrMinimise() {
    if (m_reachableByTray) {
        hide();
    } else {
        if (!testAttribute(Qt::WA_Resized)) {
            // A window that computes its size while it is being shown would not be minimised.
            ensurePolished();
            resize(sizeHint());
        }
        showMinimized();
    }
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
    if (event->type() == QEvent::WindowStateChange && isVisible() && !isMinimized()) {
        m_inBackground = false; // the user restored it from the task bar
    }
    QMainWindow::changeEvent(event);
}

} // namespace quorvane

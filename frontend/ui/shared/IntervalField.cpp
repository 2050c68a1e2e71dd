#include "IntervalField.h"

#include "frontend/support/TextNumbers.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>

namespace quorvane {

namespace {

constexpr int maximumDigits = 2;

} // namespace

IntervalField::IntervalField(QLineEdit &field, QSpinBox &stepper, Zero typedZero, QObject *parent)
    : QObject(parent), m_field(field), m_stepper(stepper), m_typedZero(typedZero) {
    // The field beside the stepper shows the number, so only the stepper's two buttons are shown.
    if (auto *number = m_stepper.findChild<QLineEdit *>()) {
        number->hide();
    }
    connect(&m_field, &QLineEdit::textEdited, this, &IntervalField::controlTextDidChange);
    connect(&m_stepper, &QSpinBox::valueChanged, this, &IntervalField::changeIpIntervalStepperPressed);
}

void IntervalField::show(int minutes) {
    // A field that reads so already keeps its text and its cursor: the number may be the one being typed.
    if (m_field.text().isEmpty() || this->minutes() != minutes) {
        m_field.setText(QString::number(minutes));
    }
    setStep(minutes);
}

void IntervalField::setStep(int minutes) {
    const QSignalBlocker quiet(m_stepper);
    m_stepper.setValue(minutes);
}

void IntervalField::setEnabled(bool on) {
    m_field.setEnabled(on);
    m_stepper.setEnabled(on);
}

int IntervalField::minutes() const {
    return integerValue(m_field.text());
}

void IntervalField::controlTextDidChange() {
    QString text = m_field.text();
    if (!pureInteger(text, maximumDigits)) {
        correct(text);
        return; // the next edit, or the end of the editing, is what counts
    }
    if (m_typedZero == Zero::BecomesOne) {
        intervalChanged();
    }
    setStep(minutes());
    controlTextEndEditing();
}

void IntervalField::intervalChanged() {
    if (minutes() == 0) {
        correct(QStringLiteral("1"));
    }
}

void IntervalField::correct(const QString &text) {
    m_field.setText(text);
    m_field.setModified(true); // what the user entered, only corrected
}

void IntervalField::controlTextEndEditing() {
    Q_EMIT entered(minutes());
}

void IntervalField::changeIpIntervalStepperPressed(int minutes) {
    m_field.setText(QString::number(minutes));
    controlTextEndEditing();
}

} // namespace quorvane

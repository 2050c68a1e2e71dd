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
    connect(&m_field, &QLineEdit::textEdited, this, &IntervalField::typed);
    connect(&m_stepper, &QSpinBox::valueChanged, this, &IntervalField::stepped);
}

void IntervalField::show(int minutes) {
    m_field.setText(QString::number(minutes));
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

void IntervalField::typed() {
    QString text = m_field.text();
    if (!pureInteger(text, maximumDigits)) {
        m_field.setText(text); // handled as another edit
    }
    if (minutes() == 0 && m_typedZero == Zero::BecomesOne) {
        m_field.setText(QStringLiteral("1"));
    }
    setStep(minutes());
    Q_EMIT entered(minutes());
}

void IntervalField::stepped(int minutes) {
    m_field.setText(QString::number(minutes));
    Q_EMIT entered(minutes);
}

} // namespace quorvane

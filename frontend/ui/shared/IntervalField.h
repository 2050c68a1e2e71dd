#pragma once

#include <QObject>

class QLineEdit;
class QSpinBox;

namespace quorvane {

/// A text field for the minutes between two changes of the address, with a stepper whose buttons step it.
/// Only what the user does is reported. The widgets are not owned and must outlive this. Main thread.
class IntervalField final : public QObject {
    Q_OBJECT

public:
    enum class Zero { Accepted, BecomesOne };

    /// Typed characters other than digits, and digits after the second, are removed.
    IntervalField(QLineEdit &field, QSpinBox &stepper, Zero typedZero, QObject *parent);

    void show(int minutes);
    /// Shows the number in the stepper only, so that a number that is being typed stays.
    void setStep(int minutes);
    void setEnabled(bool on);
    /// The field's number, without a check.
    [[nodiscard]] int minutes() const;

Q_SIGNALS:
    void entered(int minutes);

private:
    void typed();
    void stepped(int minutes);

    QLineEdit &m_field;
    QSpinBox &m_stepper;
    Zero m_typedZero;
};

} // namespace quorvane

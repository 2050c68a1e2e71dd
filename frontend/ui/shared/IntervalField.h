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

    /// Typed characters other than digits, and digits after the second, are removed. An edit that had to be
    /// corrected so is not reported: the corrected text waits for the next edit or the end of the editing.
    IntervalField(QLineEdit &field, QSpinBox &stepper, Zero typedZero, QObject *parent);

    void show(int minutes);
    void setEnabled(bool on);
    /// The field's number, without a check.
    [[nodiscard]] int minutes() const;
    /// The field's action: a number of 0 is replaced by 1. Reports nothing.
    void intervalChanged();
    /// Reports the field's number.
    void controlTextEndEditing();

Q_SIGNALS:
    void entered(int minutes);

private:
    void setStep(int minutes);
    void controlTextDidChange();
    void correct(const QString &text);
    void changeIpIntervalStepperPressed(int minutes);

    QLineEdit &m_field;
    QSpinBox &m_stepper;
    Zero m_typedZero;
};

} // namespace quorvane

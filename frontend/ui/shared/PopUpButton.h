#pragma once

#include <QComboBox>

namespace quorvane {

/// A pop-up button that changes its choice only in its open list. Keys that would step through the entries of
/// a closed one open the list instead, and the wheel is left to what is around the button: every step would
/// be a choice. It draws its own arrow: a picture in the style sheet would make Qt look through its picture
/// plug-ins at the start. Main thread.
class PopUpButton final : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
};

} // namespace quorvane

#pragma once

#include <QComboBox>

namespace quorvane {

/// A pop-up button that draws its own arrow: a picture in the style sheet would make Qt look through its
/// picture plug-ins at the start.
class PopUpButton final : public QComboBox {
    Q_OBJECT

public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quorvane

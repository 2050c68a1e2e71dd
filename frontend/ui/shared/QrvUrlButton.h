#pragma once

#include <QPushButton>

namespace quorvane {

/// A button that looks like a link: its title in link blue, the pointing hand over it. Main thread.
class QrvUrlButton final : public QPushButton {
    Q_OBJECT

public:
    explicit QrvUrlButton(QWidget *parent = nullptr);
};

} // namespace quorvane

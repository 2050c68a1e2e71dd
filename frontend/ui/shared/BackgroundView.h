#pragma once

#include <QWidget>

namespace quorvane {

/// A fixed dark grey behind other views. Main thread.
class BackgroundView final : public QWidget {
    Q_OBJECT

public:
    explicit BackgroundView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quorvane

#pragma once

#include <QString>
#include <QWidget>

namespace quorvane {

/// An IP address as a strip of digit pictures, each as wide as its image and all as high as the first one. A
/// character without a picture has no size; characters beyond the length of any address are not drawn. The
/// accessible name is the exact text. Main thread.
class QrvFancyIp final : public QWidget {
    Q_OBJECT

public:
    explicit QrvFancyIp(QWidget *parent = nullptr);

    void setStringValue(const QString &text);

    [[nodiscard]] QString stringValue() const { return m_shown; }

    [[nodiscard]] QSize sizeHint() const override;

private:
    QString m_shown;
    QSize m_strip;
};

} // namespace quorvane

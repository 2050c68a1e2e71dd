#include "QrvFancyIp.h"

#include "Images.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <algorithm>

namespace quorvane {

namespace {

/// More than any address has. A longer text from the service is cut off far beyond the window's edge.
constexpr qsizetype maximumGlyphs = 64;

QString imageOf(QChar character) {
    const QString name = character == u'.' ? QStringLiteral("dot") : QString(character);
    return Images::exists(name) ? name : QString();
}

/// Presents the strip as one text, so that the pictures of its digits are no separate parts.
class StripInterface final : public QAccessibleWidget {
public:
    explicit StripInterface(QrvFancyIp *strip) : QAccessibleWidget(strip, QAccessible::StaticText) {}

    [[nodiscard]] int childCount() const override { return 0; }

    [[nodiscard]] QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
};

QAccessibleInterface *describe(const QString & /*key*/, QObject *object) {
    auto *strip = qobject_cast<QrvFancyIp *>(object);
    return strip != nullptr ? new StripInterface(strip) : nullptr;
}

} // namespace

QrvFancyIp::QrvFancyIp(QWidget *parent) : QWidget(parent) {
    static const bool installed = [] {
        QAccessible::installFactory(describe);
        return true;
    }();
    Q_UNUSED(installed)
}

void QrvFancyIp::setStringValue(const QString &text) {
    const auto old = findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly);
    for (QLabel *view : old) {
        view->hide();
        delete view;
    }
    m_shown = text;
    setAccessibleName(text);
    const QStringView drawn = QStringView(text).first(std::min(text.size(), maximumGlyphs));
    const int height = drawn.isEmpty() ? 0 : Images::size(imageOf(drawn.front())).height();
    int x = 0;
    for (const QChar character : drawn) {
        const QString image = imageOf(character);
        const QSize size = Images::size(image);
        auto *view = new QLabel(this);
        view->setObjectName(image);
        if (!image.isNull()) {
            view->setPixmap(Images::pixmap(image, size, devicePixelRatioF()));
        }
        view->setGeometry(x, 0, size.width(), height);
        view->show();
        x += size.width();
    }
    if (!text.isEmpty()) { // an empty text keeps the size of the last one
        m_strip = QSize(x, height);
        setFixedSize(m_strip);
    }
    update();
}

QSize QrvFancyIp::sizeHint() const {
    return m_strip;
}

} // namespace quorvane

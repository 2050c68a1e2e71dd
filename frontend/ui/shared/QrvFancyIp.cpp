#include "QrvFancyIp.h"

#include "Images.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <algorithm>

namespace quorvane {

namespace {

constexpr QSize digitSize(22, 34);
constexpr QSize dotSize(11, 34);
/// More than any address has. A longer text from the service is cut off far beyond the window's edge.
constexpr qsizetype maximumGlyphs = 64;

struct Glyph {
    QString image;
    QSize size;
};

Glyph glyphOf(QChar character) {
    if (character == u'.') {
        return {QStringLiteral("dot"), dotSize};
    }
    const QString name(character);
    return Images::exists(name) ? Glyph{name, digitSize} : Glyph{QString(), QSize(0, digitSize.height())};
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
    int x = 0;
    for (const QChar character : QStringView(text).first(std::min(text.size(), maximumGlyphs))) {
        const Glyph glyph = glyphOf(character);
        auto *view = new QLabel(this);
        view->setObjectName(glyph.image);
        if (!glyph.image.isNull()) {
            view->setPixmap(Images::pixmap(glyph.image, glyph.size, devicePixelRatioF()));
        }
        view->setGeometry(QRect(QPoint(x, 0), QSize(glyph.size.width(), digitSize.height())));
        view->show();
        x += glyph.size.width();
    }
    if (!text.isEmpty()) { // an empty text keeps the size of the last one
        m_strip = QSize(x, digitSize.height());
        setFixedSize(m_strip);
    }
    update();
}

QSize QrvFancyIp::sizeHint() const {
    return m_strip;
}

} // namespace quorvane

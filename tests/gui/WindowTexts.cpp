#include "tests/gui/WindowTexts.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGlyphRun>
#include <QLabel>
#include <QSet>
#include <QTextLayout>

namespace quorvane {

namespace {

QString textOf(const QWidget &widget) {
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        return label->text();
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget)) {
        return button->text();
    }
    const auto *popUp = qobject_cast<const QComboBox *>(&widget);
    return popUp != nullptr ? popUp->currentText() : QString();
}

QList<const QWidget *> withText(const QWidget &window) {
    QList<const QWidget *> widgets;
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        if (widget->isVisible() && !textOf(*widget).isEmpty()) {
            widgets.append(widget);
        }
    }
    return widgets;
}

bool fits(const QWidget &widget) {
    const QSize size = widget.size();
    const auto *label = qobject_cast<const QLabel *>(&widget);
    if (label != nullptr && label->wordWrap()) {
        return label->heightForWidth(size.width()) <= size.height();
    }
    const QSize needed =
        qobject_cast<const QComboBox *>(&widget) != nullptr ? widget.minimumSizeHint() : widget.sizeHint();
    return needed.width() <= size.width() && needed.height() <= size.height();
}

} // namespace

QStringList WindowTexts::clipped(const QWidget &window) {
    QStringList found;
    for (const QWidget *widget : withText(window)) {
        const bool inside = widget->parentWidget()->rect().contains(widget->geometry());
        if (!inside || !fits(*widget)) {
            found.append(QStringLiteral("%1 has %2x%3 and needs %4x%5: %6")
                             .arg(widget->objectName())
                             .arg(widget->width())
                             .arg(widget->height())
                             .arg(widget->sizeHint().width())
                             .arg(widget->sizeHint().height())
                             .arg(textOf(*widget)));
        }
    }
    return found;
}

QString WindowTexts::charactersWithoutGlyph(const QString &text, const QFont &font) {
    QString without;
    for (const uint character : text.toUcs4()) {
        if (!QChar::isPrint(character) || QChar::isSpace(character) || QChar::isMark(character)) {
            continue;
        }
        QTextLayout layout(QString::fromUcs4(reinterpret_cast<const char32_t *>(&character), 1), font);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        bool isDrawn = false;
        const auto runs = layout.glyphRuns();
        for (const QGlyphRun &run : runs) {
            isDrawn = isDrawn || !run.glyphIndexes().contains(0U);
        }
        if (!isDrawn) {
            without += layout.text();
        }
    }
    return without;
}

QString WindowTexts::charactersWithoutGlyph(const QWidget &window) {
    QString without;
    for (const QWidget *widget : withText(window)) {
        without += charactersWithoutGlyph(textOf(*widget), widget->font());
    }
    return without;
}

QString WindowTexts::mnemonics(const QWidget &window) {
    QString letters;
    for (const QWidget *widget : withText(window)) {
        const auto *label = qobject_cast<const QLabel *>(widget);
        const bool triggers = label != nullptr ? label->buddy() != nullptr
                                               : qobject_cast<const QAbstractButton *>(widget) != nullptr;
        const QString text = textOf(*widget);
        if (const qsizetype at = text.indexOf(u'&'); triggers && at >= 0 && at + 1 < text.size()) {
            letters += text.at(at + 1).toLower();
        }
    }
    return letters;
}

qsizetype WindowTexts::mnemonicConflicts(const QWidget &window) {
    const QString letters = mnemonics(window);
    return letters.size() - QSet<QChar>(letters.begin(), letters.end()).size();
}

} // namespace quorvane

#include "QrvUrlTextField.h"

#include "WebPages.h"

namespace quorvane {

namespace {

// Pure blue is unreadable on a dark window; this blue is readable on light and dark ones.
const QString linkColour = QStringLiteral("#5aa9e6");

} // namespace

QrvUrlTextField::QrvUrlTextField(QWidget *parent) : QLabel(parent) {
    setCursor(Qt::PointingHandCursor);
}

QString QrvUrlTextField::hyperlinkFromString(const QString &text, const QString &url) {
    return QStringLiteral("<a href=\"%1\" style=\"color:%2; text-decoration:underline\">%3</a>")
        .arg(url.toHtmlEscaped(), linkColour, text.toHtmlEscaped());
}

void QrvUrlTextField::hyperlinkWithTextField(QLabel &field, const QString &text, const QString &url) {
    field.setTextFormat(Qt::RichText);
    field.setTextInteractionFlags(Qt::TextBrowserInteraction);
    field.setOpenExternalLinks(false);
    field.setText(hyperlinkFromString(text, url));
    field.setAccessibleName(text);
    QObject::connect(&field, &QLabel::linkActivated, &field,
                     [](const QString &link) { WebPages::open(link); });
}

} // namespace quorvane

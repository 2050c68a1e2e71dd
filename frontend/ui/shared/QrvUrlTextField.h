#pragma once

#include <QLabel>

namespace quorvane {

/// A text that opens an address when it is clicked. Main thread.
class QrvUrlTextField final : public QLabel {
    Q_OBJECT

public:
    explicit QrvUrlTextField(QWidget *parent = nullptr);

    /// The text as a link to the address, in link blue and underlined. Markup in either of them is escaped.
    [[nodiscard]] static QString hyperlinkFromString(const QString &text, const QString &url);
    /// Turns a label into such a link, which can be selected and reached by keyboard.
    static void hyperlinkWithTextField(QLabel &field, const QString &text, const QString &url);
};

} // namespace quorvane

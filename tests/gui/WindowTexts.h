#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

class QWidget;

namespace quorvane {

/// Questions about the texts that a window shows, in whatever language.
namespace WindowTexts {

/// One sentence for each visible label, button or pop-up that is too small for its text, or is outside of its
/// parent.
[[nodiscard]] QStringList clipped(const QWidget &window);

/// The characters for which no font is installed, in the order of their widgets. They would be drawn as
/// boxes.
[[nodiscard]] QString charactersWithoutGlyph(const QWidget &window);
[[nodiscard]] QString charactersWithoutGlyph(const QString &text, const QFont &font);

/// The letters that trigger the visible controls with the Alt key, once for each control.
[[nodiscard]] QString mnemonics(const QWidget &window);

/// The number of letters that more than one control has.
[[nodiscard]] qsizetype mnemonicConflicts(const QWidget &window);

} // namespace WindowTexts

} // namespace quorvane

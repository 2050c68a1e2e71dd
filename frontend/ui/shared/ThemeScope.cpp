#include "ThemeScope.h"

#include <QApplication>
#include <QPalette>
#include <QWidget>

namespace quorvane {

namespace {

constexpr char darkProperty[] = "keepsDark";

} // namespace

void ThemeScope::keepDark(QWidget &view) {
    view.setProperty(darkProperty, true);
}

ThemeScheme ThemeScope::schemeOf(const QWidget *widget) {
    constexpr int half = 128;
    for (const QWidget *part = widget; part != nullptr; part = part->parentWidget()) {
        if (part->property(darkProperty).toBool()) {
            return ThemeScheme::Dark;
        }
    }
    return QApplication::palette().color(QPalette::Window).lightness() < half ? ThemeScheme::Dark
                                                                              : ThemeScheme::Light;
}

} // namespace quorvane

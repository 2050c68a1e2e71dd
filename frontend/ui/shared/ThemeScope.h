#pragma once

#include "ThemeColours.h"

class QWidget;

namespace quorvane {

/// Which scheme holds where: a view can stay dark in a light program. Main thread.
class ThemeScope {
public:
    /// Keeps a background view and everything in it dark in both schemes.
    static void keepDark(QWidget &view);

    /// The scheme in which a widget is drawn; the program's for none.
    [[nodiscard]] static ThemeScheme schemeOf(const QWidget *widget);
};

} // namespace quorvane

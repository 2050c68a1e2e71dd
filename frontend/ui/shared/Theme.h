#pragma once

#include "ThemeColours.h"

class QApplication;

namespace quorvane {

/// The look of the windows. Main thread.
class Theme {
public:
    using Scheme = ThemeScheme;

    /// Sets the style and the colours of the whole program. May be called again, with windows open.
    static void apply(QApplication &application, Scheme scheme = Scheme::Dark);
};

} // namespace quorvane

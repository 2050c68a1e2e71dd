#pragma once

class QApplication;

namespace quorvane {

/// The program's dark theme, the same on every desktop.
namespace Theme {

void apply(QApplication &application);

} // namespace Theme

} // namespace quorvane

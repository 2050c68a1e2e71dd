#pragma once

class QApplication;

namespace quorvane {

/// The program's look: a calm dark one, the same on every desktop.
namespace Theme {

void apply(QApplication &application);

} // namespace Theme

} // namespace quorvane

#pragma once

class QWidget;

namespace quorvane {

/// Shows the window in front of the others and gives it the keyboard; a minimised one is restored.
void bringForward(QWidget &window);

} // namespace quorvane

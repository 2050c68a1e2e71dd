#pragma once

class QWidget;

namespace quorvane {

/// The greatest height, in logical pixels, that a window can have on its screen: without its title bar and
/// the desktop's panels, which are estimated where the window system does not report them. Main thread.
[[nodiscard]] int roomOnScreen(const QWidget &window);

} // namespace quorvane

#pragma once

class QDialog;
class QWidget;

namespace quorvane {

/// Shows the window, not minimised, above the program's others and with the focus; below a modal window that
/// is open, which would be out of reach otherwise.
void bringForward(QWidget &window);

/// Shows a modal window above all of the program's windows, as one that belongs to the window in front, and
/// with the focus. Returns at once.
void showModally(QDialog &dialog);

/// Sets whether the window stays above other programs' windows, without hiding or unfocusing it.
void setFloating(QWidget &window, bool floats);

} // namespace quorvane

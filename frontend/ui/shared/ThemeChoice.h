#pragma once

#include "Theme.h"

#include <QApplication>

namespace quorvane {

/// Keeps the program in the scheme that the user has chosen for it, else in the desktop's; dark without any
/// choice. One per process; main thread.
class ThemeChoice {
public:
    /// Applies the scheme now and after each change of the desktop's.
    explicit ThemeChoice(QApplication &application);
    ~ThemeChoice();
    ThemeChoice(const ThemeChoice &) = delete;
    ThemeChoice &operator=(const ThemeChoice &) = delete;

    /// To be called after the user's own choice may have changed.
    static void update();

private:
    [[nodiscard]] static Theme::Scheme wanted();
    void apply();

    QApplication &m_application;
    Theme::Scheme m_applied;
};

} // namespace quorvane

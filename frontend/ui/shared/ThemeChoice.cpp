#include "ThemeChoice.h"

#include "frontend/support/Preferences.h"
#include "platform/Appearance.h"
#include "platform/Platform.h"

namespace quorvane {

namespace {

// What the preference contains; any other number follows the desktop.
constexpr qint64 alwaysDark = 1;
constexpr qint64 alwaysLight = 2;

ThemeChoice *theChoice = nullptr;

platform::Appearance &desktop() {
    return *platform::Platform::current().appearance;
}

} // namespace

ThemeChoice::ThemeChoice(QApplication &application) : m_application(application), m_applied(wanted()) {
    theChoice = this;
    Theme::apply(m_application, m_applied);
    desktop().setObserver([this] { apply(); });
}

ThemeChoice::~ThemeChoice() {
    desktop().setObserver({});
    theChoice = nullptr;
}

void ThemeChoice::update() {
    if (theChoice != nullptr) {
        theChoice->apply();
    }
}

Theme::Scheme ThemeChoice::wanted() {
    const qint64 chosen = Preferences::integer(Preference::Appearance);
    const bool light = chosen == alwaysLight ||
                       (chosen != alwaysDark && desktop().current().scheme == platform::ColorScheme::Light);
    return light ? Theme::Scheme::Light : Theme::Scheme::Dark;
}

void ThemeChoice::apply() {
    const Theme::Scheme scheme = wanted();
    if (scheme != m_applied) {
        m_applied = scheme;
        Theme::apply(m_application, scheme);
    }
}

} // namespace quorvane

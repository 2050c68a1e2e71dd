#pragma once

#include "QrvTableDataSource.h"

#include <QWidget>
#include <memory>

namespace quorvane {

class DefaultsBinding;

namespace Ui {
class SettingsCookieCrumble;
}

/// The pane "Cookie Crumble": the list of cookie sites, stored at once, and the cookie header's box, a held
/// edit. Main thread.
class CookieCrumblePane final : public QWidget {
    Q_OBJECT

public:
    /// The binding is not owned; it must outlive the pane.
    explicit CookieCrumblePane(DefaultsBinding &binding, QWidget *parent = nullptr);
    ~CookieCrumblePane() override;

    /// Adds the typed site to the table, without its "https://" or "http://". If the text is empty or
    /// unusable, only beeps.
    void addCookieSiteIpButtonPressed();
    void deleteCookieSiteIpButtonPressed();
    /// Whether the text is a valid URL.
    [[nodiscard]] static bool validateUrl(const QString &text);
    [[nodiscard]] bool hidesCookies() const;

Q_SIGNALS:
    /// The typed text is no site.
    void refused();

private:
    QrvTableDataSource m_sites;
    std::unique_ptr<Ui::SettingsCookieCrumble> m_ui;
};

} // namespace quorvane

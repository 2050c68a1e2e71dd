#pragma once

#include <QObject>

#include <functional>
#include <memory>

class QSocketNotifier;
struct xcb_connection_t;

namespace quorvane::platform {

/// Reports whether the X screen's tray selection has an owner, over a separate connection. Without an X
/// server there is no owner. Main thread.
class TraySelectionWatch final : public QObject {
    Q_OBJECT

public:
    /// `display` has the form of $DISPLAY; when null, $DISPLAY is used.
    explicit TraySelectionWatch(const QByteArray &display = {}, QObject *parent = nullptr);
    ~TraySelectionWatch() override;

    [[nodiscard]] bool owned() const { return m_owner != 0; }

    void setChangeHandler(std::function<void()> changed) { m_changed = std::move(changed); }

private:
    struct Disconnect {
        void operator()(xcb_connection_t *connection) const;
    };

    [[nodiscard]] quint32 atom(const QByteArray &name) const;
    void watchRoot(int screen);
    void look();
    /// Handles the received events; returns whether any of them concerns the tray.
    bool handleEvents();
    void readEvents();
    void setOwner(quint32 newOwner);

    std::unique_ptr<xcb_connection_t, Disconnect> m_connection;
    QSocketNotifier *m_notifier = nullptr;
    quint32 m_root = 0;
    quint32 m_selection = 0;
    quint32 m_manager = 0;
    quint32 m_owner = 0;
    std::function<void()> m_changed;
};

} // namespace quorvane::platform

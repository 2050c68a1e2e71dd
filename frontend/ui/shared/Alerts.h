#pragma once

#include <QObject>
#include <QQueue>
#include <QString>
#include <functional>

/// Every alert of the program goes through here. Main thread. Alerts have one "OK" button; no two are
/// open at once.
class Alerts final : public QObject {
    Q_OBJECT

public:
    struct Alert {
        QString title;
        QString text;
        QString informative;
    };

    /// Stands in for the window, for tests: called in place of showing the alert.
    using Presenter = std::function<void(const Alert &)>;

    [[nodiscard]] static Alerts &shared();

    /// Shows the alert and returns when it is dismissed. While another alert is open it waits its turn
    /// behind that one, and this returns at once.
    void critical(const Alert &alert);
    /// Shows the alert after the present handler has returned and after every alert asked for before.
    void criticalLater(const Alert &alert);

    void setPresenter(Presenter replacement) { presenter = std::move(replacement); }

private:
    Alerts() = default;
    void show(const Alert &alert);
    void showWaiting();

    Presenter presenter;
    QQueue<Alert> waiting;
    bool open = false;
};

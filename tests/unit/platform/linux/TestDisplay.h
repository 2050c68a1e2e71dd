#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>

#include <memory>

struct xcb_connection_t;

namespace quorvane::platform {

/// An X server of a test's own, on a display number that was free. It ends with its last client.
class TestDisplay {
public:
    TestDisplay();
    ~TestDisplay();
    TestDisplay(const TestDisplay &) = delete;
    TestDisplay &operator=(const TestDisplay &) = delete;

    /// Such as ":7"; empty when the server did not start.
    [[nodiscard]] QByteArray name() const { return m_display; }

    /// Ends the server at once, its clients' connections with it.
    void kill();
    /// Runs setxkbmap with these arguments; whether it went well.
    [[nodiscard]] bool setLayout(const QStringList &arguments) const;

private:
    QProcess m_server;
    QByteArray m_display;
};

struct CloseDisplay {
    void operator()(xcb_connection_t *open) const;
};

using DisplayConnection = std::unique_ptr<xcb_connection_t, CloseDisplay>;

/// Another client of the display: its keyboard, and what it takes for itself. Each call returns when the
/// server is through with it.
class OtherClient {
public:
    explicit OtherClient(const QByteArray &display);

    [[nodiscard]] bool isConnected() const;
    /// Key codes of X.
    void press(quint8 key);
    void release(quint8 key);
    /// Presses the keys in turn and releases them in reverse.
    void strike(const QList<quint8> &keys);
    /// Whether the server let this client have exactly this combination.
    [[nodiscard]] bool grab(quint8 key, int modifiers);
    void ungrab(quint8 key, int modifiers);
    /// Which of the keyboard's layouts is in use, from 0; -1 when nobody knows.
    [[nodiscard]] int layoutInUse();
    void pressButton(quint8 button);
    void releaseButton(quint8 button);
    /// Makes the keys the only ones of the modifier, 0 being Shift and 7 Mod5.
    [[nodiscard]] bool setModifierKeys(const QList<QList<quint8>> &keysOfModifiers);

private:
    void sync();
    void fake(quint8 type, quint8 key);

    DisplayConnection m_connection;
    quint32 m_root = 0;
};

/// Counts every press of a key that the server makes, its repeats among them, whoever gets it.
class RepeatWitness {
public:
    explicit RepeatWitness(const QByteArray &display);
    ~RepeatWitness();
    RepeatWitness(const RepeatWitness &) = delete;
    RepeatWitness &operator=(const RepeatWitness &) = delete;

    [[nodiscard]] int pressesOf(quint8 key);

private:
    DisplayConnection m_control;
    DisplayConnection m_data;
    quint32 m_context = 0;
    unsigned m_sequence = 0;
    QList<quint8> m_seen;
};

} // namespace quorvane::platform

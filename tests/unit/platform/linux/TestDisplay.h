#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>

#include <memory>

struct xcb_connection_t;
struct xcb_record_range_t;

namespace quorvane::platform {

/// A separate X server for a test, on a free display number. It ends with its last client.
class TestDisplay {
public:
    TestDisplay();
    ~TestDisplay();
    TestDisplay(const TestDisplay &) = delete;
    TestDisplay &operator=(const TestDisplay &) = delete;

    /// Such as ":7"; empty when the server did not start.
    [[nodiscard]] QByteArray name() const { return m_display; }

    /// Ends the server at once, and so its clients' connections.
    void kill();
    /// Runs setxkbmap with these arguments; returns whether it succeeded.
    [[nodiscard]] bool setLayout(const QStringList &arguments) const;

private:
    QProcess m_server;
    QByteArray m_display;
};

struct CloseDisplay {
    void operator()(xcb_connection_t *open) const;
};

using DisplayConnection = std::unique_ptr<xcb_connection_t, CloseDisplay>;

/// Another client of the display, which simulates the keyboard and grabs keys. Each call returns after the
/// server has processed it.
class OtherClient {
public:
    explicit OtherClient(const QByteArray &display);

    [[nodiscard]] bool isConnected() const;
    /// Key codes of X.
    void press(quint8 key);
    void release(quint8 key);
    /// Presses the keys in turn and releases them in reverse.
    void pressTogether(const QList<quint8> &keys);
    /// Grabs exactly this combination; returns whether the server allowed it.
    [[nodiscard]] bool grab(quint8 key, int modifiers);
    void ungrab(quint8 key, int modifiers);
    /// The index of the keyboard layout in use, from 0; -1 when it is not known.
    [[nodiscard]] int layoutInUse();
    void pressButton(quint8 button);
    void releaseButton(quint8 button);
    /// Assigns the modifiers' keys; no others remain. 0 is Shift, 7 is Mod5.
    [[nodiscard]] bool setModifierKeys(const QList<QList<quint8>> &keysOfModifiers);

private:
    void sync();
    void fake(quint8 type, quint8 key);

    DisplayConnection m_connection;
    quint32 m_root = 0;
};

/// Records a range of events or requests of all clients, from the end of the constructor on.
class ServerRecording {
public:
    ServerRecording(const QByteArray &display, const xcb_record_range_t &range);
    ~ServerRecording();
    ServerRecording(const ServerRecording &) = delete;
    ServerRecording &operator=(const ServerRecording &) = delete;

    /// Returns what has been recorded since the last call.
    [[nodiscard]] QByteArray receive();

private:
    DisplayConnection m_control;
    DisplayConnection m_data;
    quint32 m_context = 0;
    unsigned m_sequence = 0;
};

/// Counts every press of a key that the server generates, including its repeats, whichever client receives
/// it.
class PressCounter {
public:
    explicit PressCounter(const QByteArray &display);

    [[nodiscard]] int pressesOf(quint8 key);

private:
    ServerRecording m_recording;
    QList<quint8> m_seen;
};

/// Counts how often clients request which keys are held down.
class HeldKeysQueryCounter {
public:
    explicit HeldKeysQueryCounter(const QByteArray &display);

    [[nodiscard]] int queries();

private:
    ServerRecording m_recording;
    int m_seen = 0;
};

} // namespace quorvane::platform

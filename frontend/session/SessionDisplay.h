#pragma once

#include <QObject>
#include <QString>

namespace quorvane {

/// How a line of the window is drawn.
enum class Tone {
    Warning, ///< the warning red
    Quiet,   ///< light grey
    Plain    ///< white
};

/// The state of the session as the window, the tray icon and its menu show it.
struct DisplayState {
    struct Line {
        QString text;
        Tone tone = Tone::Plain;
        bool visible = false;
        bool operator==(const Line &) const = default;
    };

    struct Button {
        QString title;
        bool enabled = false;
        bool on = false;
        bool operator==(const Button &) const = default;
    };

    struct Item {
        QString title;
        bool enabled = false;
        bool operator==(const Item &) const = default;
    };

    Line line1, line21, line22, line3, line4;
    QString currentIp; ///< exactly as shown, a trailing line feed included
    QString flagImage; ///< name of the flag's image; null when cleared
    bool flagVisible = false;
    QString stateImage;
    QString trayImage;
    bool spinning = false;
    Button hideButton;
    bool advancedEnabled = true;
    bool changeIpVisible = false;
    bool discardIpVisible = false;
    Item hideItem;
    bool changeItemEnabled = false;
    bool copyItemEnabled = true;
    int interval = 0;
    bool intervalEnabled = false;

    bool operator==(const DisplayState &) const = default;
};

/// The only class that turns a state of the session into texts, tones, images and enabled controls. Draws
/// nothing: the window and the tray icon connect to changed(). Main thread.
class SessionDisplay final : public QObject {
    Q_OBJECT

public:
    explicit SessionDisplay(QObject *parent = nullptr);

    [[nodiscard]] const DisplayState &state() const { return m_current; }

    /// The start of the run, until the first answer.
    void starting();
    /// An answer contained the address that the service sees.
    void currentIpKnown(const QString &address);
    /// Enables the controls that wait for the first answer.
    void controlsReady();
    void answerHandled();
    void trayImage(const QString &name);

    void switchedOn(bool on);
    void switchingOn();
    void searching();
    void fetching();
    void advancedEnabled(bool enabled);
    void tunnelStarting();
    void hidden(const QString &lentIp, const QString &originalIp, const QString &flagImage,
                const QString &location);
    /// The last attempt failed. The copy item, the flag's visibility and the notice do not change.
    void failed(const QString &originalIp);
    void notHidden(const QString &originalIp);
    void hideRotationButtons();
    void interval(int minutes, bool enabled);
    /// The attempt waits for an action of the user: shows the text, and enables the controls that stop the
    /// attempt.
    void waitingForLocation(const QString &text);
    /// The attempt continues.
    void waitingEnded();

    [[nodiscard]] static QString hideTitle();
    [[nodiscard]] static QString stopTitle();

Q_SIGNALS:
    void changed(const DisplayState &state);

private:
    void warn();
    void backToNotHidden(const QString &originalIp);
    void publish();

    DisplayState m_current;
};

} // namespace quorvane

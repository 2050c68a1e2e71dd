#pragma once

#include "SessionFacts.h"

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
        QString hint; ///< what a press does
        bool operator==(const Button &) const = default;
    };

    struct Item {
        QString title;
        bool enabled = false;
        bool operator==(const Item &) const = default;
    };

    Look look = Look::NotHidden; ///< for texts about the whole state: tooltip, accessible name
    Line line1, line21, line22, line3, line4;
    Line addressNotice; ///< over the address
    Line stepLine;      ///< which step of an attempt is under way, or what to do first
    bool timed = false; ///< the step line is followed by the seconds since the search began
    Line lockNotice;
    bool liftVisible = false; ///< whether the network lock can be lifted
    QString currentIp;        ///< exactly as shown, a trailing line feed included
    QString flagImage;        ///< name of the flag's image; null when cleared
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
    bool refreshEnabled = true;
    QString refreshHint; ///< why the locations cannot be refreshed; null when they can
    int interval = 0;
    bool changesAutomatically = false;
    bool requiresUs = false;

    bool operator==(const DisplayState &) const = default;

    [[nodiscard]] static QString hideTitle();
    [[nodiscard]] static QString stopTitle();
};

/// The only function that turns a state of the session into texts, tones, images and enabled controls. Any
/// thread.
[[nodiscard]] DisplayState displayOf(const SessionFacts &facts);

/// Whether the hide button and the hide item can be pressed.
[[nodiscard]] bool isPressable(const SessionFacts &facts);

/// Whether nothing is hidden and no attempt is under way, so that the network lock can be lifted.
[[nodiscard]] bool isAtRest(const SessionFacts &facts);

/// Whether a tunnel is up or about to be started, so that the address that the service sees may be a lent
/// one.
[[nodiscard]] bool isTunnelInUse(const SessionFacts &facts);

} // namespace quorvane

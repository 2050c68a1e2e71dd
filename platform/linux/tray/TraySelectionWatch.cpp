#include "TraySelectionWatch.h"

#include "platform/linux/x11/XcbMemory.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>

namespace quorvane::platform {

void TraySelectionWatch::Disconnect::operator()(xcb_connection_t *open) const {
    xcb_disconnect(open);
}

TraySelectionWatch::TraySelectionWatch(const QByteArray &display, QObject *parent) : QObject(parent) {
    int screen = 0;
    m_connection.reset(xcb_connect(display.isNull() ? nullptr : display.constData(), &screen));
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        return;
    }
    watchRoot(screen);
    m_notifier =
        new QSocketNotifier(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TraySelectionWatch::readEvents);
    look();
    QMetaObject::invokeMethod(this, &TraySelectionWatch::readEvents, Qt::QueuedConnection);
}

TraySelectionWatch::~TraySelectionWatch() = default;

quint32 TraySelectionWatch::atom(const QByteArray &name) const {
    const auto cookie =
        xcb_intern_atom(m_connection.get(), 0, static_cast<quint16>(name.size()), name.constData());
    const auto answer = adopt(xcb_intern_atom_reply(m_connection.get(), cookie, nullptr));
    return answer ? answer->atom : 0U;
}

void TraySelectionWatch::watchRoot(int screen) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    for (int i = 0; i < screen && screens.rem > 1; ++i) {
        xcb_screen_next(&screens);
    }
    m_root = screens.data->root;
    m_selection = atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(screen));
    m_manager = atom("MANAGER");
    // A starting tray sends a message to the root window.
    const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.get(), m_root, XCB_CW_EVENT_MASK, &events);
}

void TraySelectionWatch::look() {
    const auto cookie = xcb_get_selection_owner(m_connection.get(), m_selection);
    const auto answer = adopt(xcb_get_selection_owner_reply(m_connection.get(), cookie, nullptr));
    quint32 found = answer ? answer->owner : 0U;
    if (found != 0 && found != m_owner) {
        // The window of a tray is destroyed when the tray ends. A window that is already destroyed cannot be
        // watched.
        const quint32 events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        const auto watching =
            xcb_change_window_attributes_checked(m_connection.get(), found, XCB_CW_EVENT_MASK, &events);
        if (adopt(xcb_request_check(m_connection.get(), watching))) {
            found = 0;
        }
    }
    setOwner(found);
}

bool TraySelectionWatch::handleEvents() {
    bool concernsTray = false;
    while (const auto event = adopt(xcb_poll_for_event(m_connection.get()))) {
        // The first bit says only that another client sent the event.
        const int kind = event->response_type & 0x7f;
        if (kind == XCB_CLIENT_MESSAGE) {
            const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            concernsTray |= message->type == m_manager && message->data.data32[1] == m_selection;
        } else if (kind == XCB_DESTROY_NOTIFY) {
            const auto *destroyed = reinterpret_cast<const xcb_destroy_notify_event_t *>(event.get());
            concernsTray |= destroyed->window == m_owner;
        }
    }
    return concernsTray;
}

void TraySelectionWatch::readEvents() {
    // look() may read further events from the socket, for which the socket is not signalled again.
    while (handleEvents()) {
        look();
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier->setEnabled(false);
        setOwner(0);
    }
}

void TraySelectionWatch::setOwner(quint32 newOwner) {
    const bool before = owned();
    m_owner = newOwner;
    if (owned() != before && m_changed) {
        m_changed();
    }
}

} // namespace quorvane::platform

#include "TestDisplay.h"

#include <cstdlib>
#include <xcb/record.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>
// The header has a field of that name.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_ // NOLINT(readability-identifier-naming): the word that the header uses
#include <xcb/xkb.h>

namespace quorvane::platform {

#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

template <typename T>
std::unique_ptr<T, Free> own(T *memory) {
    return std::unique_ptr<T, Free>(memory);
}

xcb_record_range_t keyPresses() {
    xcb_record_range_t range{};
    range.device_events = {XCB_KEY_PRESS, XCB_KEY_PRESS};
    return range;
}

xcb_record_range_t heldKeysQueries() {
    xcb_record_range_t range{};
    range.core_requests = {XCB_QUERY_KEYMAP, XCB_QUERY_KEYMAP};
    return range;
}

} // namespace

TestDisplay::TestDisplay() {
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(QStringLiteral("Xvfb"),
                   {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-terminate"),
                    QStringLiteral("-nolisten"), QStringLiteral("tcp"), QStringLiteral("-screen"),
                    QStringLiteral("0"), QStringLiteral("320x200x24")});
    QByteArray number;
    while (!number.contains('\n') && m_server.waitForReadyRead()) {
        number += m_server.readAllStandardOutput();
    }
    if (number.contains('\n')) {
        m_display = ':' + number.trimmed();
    }
}

TestDisplay::~TestDisplay() {
    kill();
}

void TestDisplay::kill() {
    m_server.kill();
    m_server.waitForFinished();
}

bool TestDisplay::setLayout(const QStringList &arguments) const {
    return QProcess::execute(QStringLiteral("setxkbmap"),
                             QStringList{QStringLiteral("-display"), QString::fromLatin1(m_display)} +
                                 arguments) == 0;
}

void CloseDisplay::operator()(xcb_connection_t *open) const {
    xcb_disconnect(open);
}

OtherClient::OtherClient(const QByteArray &display)
    : m_connection(xcb_connect(display.constData(), nullptr)) {
    if (!isConnected()) {
        return;
    }
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
    const auto asked =
        xcb_xkb_use_extension(m_connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    own(xcb_xkb_use_extension_reply(m_connection.get(), asked, nullptr));
}

bool OtherClient::isConnected() const {
    return xcb_connection_has_error(m_connection.get()) == 0;
}

void OtherClient::sync() {
    own(xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

void OtherClient::fake(quint8 type, quint8 key) {
    xcb_test_fake_input(m_connection.get(), type, key, XCB_CURRENT_TIME, m_root, 0, 0, 0);
    sync();
}

void OtherClient::press(quint8 key) {
    fake(XCB_KEY_PRESS, key);
}

void OtherClient::release(quint8 key) {
    fake(XCB_KEY_RELEASE, key);
}

void OtherClient::pressTogether(const QList<quint8> &keys) {
    for (const quint8 key : keys) {
        press(key);
    }
    for (auto key = keys.crbegin(); key != keys.crend(); ++key) {
        release(*key);
    }
}

bool OtherClient::grab(quint8 key, int modifiers) {
    const auto asked = xcb_grab_key_checked(m_connection.get(), 0, m_root, static_cast<quint16>(modifiers),
                                            key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return !own(xcb_request_check(m_connection.get(), asked)) && isConnected();
}

void OtherClient::ungrab(quint8 key, int modifiers) {
    xcb_ungrab_key(m_connection.get(), key, m_root, static_cast<quint16>(modifiers));
    sync();
}

int OtherClient::layoutInUse() {
    const auto asked = xcb_xkb_get_state(m_connection.get(), XCB_XKB_ID_USE_CORE_KBD);
    const auto state = own(xcb_xkb_get_state_reply(m_connection.get(), asked, nullptr));
    return state ? state->group : -1;
}

void OtherClient::pressButton(quint8 button) {
    fake(XCB_BUTTON_PRESS, button);
}

void OtherClient::releaseButton(quint8 button) {
    fake(XCB_BUTTON_RELEASE, button);
}

bool OtherClient::setModifierKeys(const QList<QList<quint8>> &keysOfModifiers) {
    constexpr int width = 4;
    QByteArray keys;
    for (const QList<quint8> &row : keysOfModifiers) {
        for (int i = 0; i < width; ++i) {
            keys.append(static_cast<char>(row.value(i)));
        }
    }
    const QList<quint8> codes(keys.cbegin(), keys.cend());
    const auto asked = xcb_set_modifier_mapping(m_connection.get(), width, codes.constData());
    const auto reply = own(xcb_set_modifier_mapping_reply(m_connection.get(), asked, nullptr));
    return reply && reply->status == XCB_MAPPING_STATUS_SUCCESS;
}

ServerRecording::ServerRecording(const QByteArray &display, const xcb_record_range_t &range)
    : m_control(xcb_connect(display.constData(), nullptr)),
      m_data(xcb_connect(display.constData(), nullptr)) {
    m_context = xcb_generate_id(m_control.get());
    const xcb_record_client_spec_t allClients = XCB_RECORD_CS_ALL_CLIENTS;
    own(xcb_request_check(m_control.get(), xcb_record_create_context_checked(m_control.get(), m_context, 0, 1,
                                                                             1, &allClients, &range)));
    m_sequence = xcb_record_enable_context(m_data.get(), m_context).sequence;
    xcb_flush(m_data.get());
    // The first answer means that the recording has started.
    own(xcb_wait_for_reply(m_data.get(), m_sequence, nullptr));
}

ServerRecording::~ServerRecording() {
    own(xcb_request_check(m_control.get(), xcb_record_disable_context_checked(m_control.get(), m_context)));
}

QByteArray ServerRecording::receive() {
    QByteArray all;
    void *raw = nullptr;
    while (xcb_poll_for_reply(m_data.get(), m_sequence, &raw, nullptr) == 1 && raw != nullptr) {
        const auto reply = own(static_cast<xcb_record_enable_context_reply_t *>(raw));
        for (int at = 0; at < xcb_record_enable_context_data_length(reply.get()); ++at) {
            all.append(static_cast<char>(xcb_record_enable_context_data(reply.get())[at]));
        }
    }
    return all;
}

PressCounter::PressCounter(const QByteArray &display) : m_recording(display, keyPresses()) {}

int PressCounter::pressesOf(quint8 key) {
    constexpr qsizetype eventSize = sizeof(xcb_key_press_event_t);
    const QByteArray events = m_recording.receive();
    for (qsizetype at = 0; at < events.size(); at += eventSize) {
        m_seen.append(static_cast<quint8>(events.at(at + 1)));
    }
    return static_cast<int>(m_seen.count(key));
}

HeldKeysQueryCounter::HeldKeysQueryCounter(const QByteArray &display)
    : m_recording(display, heldKeysQueries()) {}

int HeldKeysQueryCounter::queries() {
    constexpr qsizetype requestSize = sizeof(xcb_query_keymap_request_t);
    m_seen += static_cast<int>(m_recording.receive().size() / requestSize);
    return m_seen;
}

} // namespace quorvane::platform

#include "TestServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>

namespace quorvane::platform {

namespace {

sockaddr *plain(sockaddr_in &address) {
    return static_cast<sockaddr *>(static_cast<void *>(&address));
}

} // namespace

TestServer::TestServer(Answer connectionAnswer, Start answerStart)
    : m_answer(std::move(connectionAnswer)), m_start(answerStart) {
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(m_listener, plain(address), size) != 0 || listen(m_listener, 16) != 0 ||
        getsockname(m_listener, plain(address), &size) != 0) {
        qFatal("the test server cannot listen");
    }
    m_number = ntohs(address.sin_port);
    m_thread = std::thread([this] { serve(); });
}

TestServer::~TestServer() {
    m_ending = true;
    m_thread.join();
    for (std::thread &connection : m_connections) {
        connection.join();
    }
    close(m_listener);
}

QByteArray TestServer::url(const QByteArray &target) const {
    return "http://127.0.0.1:" + QByteArray::number(m_number) + target;
}

QByteArrayList TestServer::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_received;
}

bool TestServer::send(int descriptor, const QByteArray &bytes) {
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t written = ::send(descriptor, bytes.constData() + sent,
                                       static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (written <= 0) {
            return false;
        }
        sent += written;
    }
    return true;
}

TestServer::Answer TestServer::reply(const QByteArray &status, const QByteArray &body,
                                     const QByteArray &header) {
    const QByteArray bytes = "HTTP/1.1 " + status + "\r\nContent-Length: " + QByteArray::number(body.size()) +
                             "\r\n" + header + "Connection: close\r\n\r\n" + body;
    return [bytes](int descriptor) {
        send(descriptor, bytes);
    };
}

void TestServer::serve() {
    while (!m_ending) {
        pollfd waiting{m_listener, POLLIN, 0};
        if (poll(&waiting, 1, 20) <= 0) {
            continue;
        }
        const int descriptor = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor >= 0) {
            m_connections.emplace_back([this, descriptor] { handle(descriptor); });
        }
    }
}

void TestServer::handle(int descriptor) {
    if (m_start == Start::AtOnce) {
        m_answer(descriptor);
        shutdown(descriptor, SHUT_WR);
        close(descriptor);
        return;
    }
    QByteArray head;
    while (!head.contains("\r\n\r\n") && !m_ending) {
        pollfd waiting{descriptor, POLLIN, 0};
        if (poll(&waiting, 1, 20) <= 0) {
            continue;
        }
        char part[4096];
        const ssize_t got = recv(descriptor, part, sizeof part, 0);
        if (got <= 0) {
            break;
        }
        head.append(part, got);
    }
    if (head.contains("\r\n\r\n")) {
        {
            const std::lock_guard lock(m_mutex);
            m_received.append(head);
        }
        m_answer(descriptor);
        shutdown(descriptor, SHUT_WR);
    }
    close(descriptor);
}

} // namespace quorvane::platform

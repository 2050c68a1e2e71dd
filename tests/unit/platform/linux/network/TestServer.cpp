#include "TestServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>

namespace {

sockaddr *plain(sockaddr_in &address) {
    return static_cast<sockaddr *>(static_cast<void *>(&address));
}

} // namespace

TestServer::TestServer(Answer connectionAnswer, Start answerStart)
    : answer(std::move(connectionAnswer)), start(answerStart) {
    listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(listener, plain(address), size) != 0 || listen(listener, 16) != 0 ||
        getsockname(listener, plain(address), &size) != 0)
        qFatal("the test server cannot listen");
    number = ntohs(address.sin_port);
    thread = std::thread([this] { serve(); });
}

TestServer::~TestServer() {
    ending = true;
    thread.join();
    for (std::thread &connection : connections)
        connection.join();
    close(listener);
}

QByteArray TestServer::url(const QByteArray &target) const {
    return "http://127.0.0.1:" + QByteArray::number(number) + target;
}

QByteArrayList TestServer::requests() const {
    const std::lock_guard lock(mutex);
    return received;
}

bool TestServer::send(int descriptor, const QByteArray &bytes) {
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t written = ::send(descriptor, bytes.constData() + sent,
                                       static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL);
        if (written <= 0)
            return false;
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
    while (!ending) {
        pollfd waiting{listener, POLLIN, 0};
        if (poll(&waiting, 1, 20) <= 0)
            continue;
        const int descriptor = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (descriptor >= 0)
            connections.emplace_back([this, descriptor] { handle(descriptor); });
    }
}

void TestServer::handle(int descriptor) {
    if (start == Start::AtOnce) {
        answer(descriptor);
        shutdown(descriptor, SHUT_WR);
        close(descriptor);
        return;
    }
    QByteArray head;
    while (!head.contains("\r\n\r\n") && !ending) {
        pollfd waiting{descriptor, POLLIN, 0};
        if (poll(&waiting, 1, 20) <= 0)
            continue;
        char part[4096];
        const ssize_t got = recv(descriptor, part, sizeof part, 0);
        if (got <= 0)
            break;
        head.append(part, got);
    }
    if (head.contains("\r\n\r\n")) {
        {
            const std::lock_guard lock(mutex);
            received.append(head);
        }
        answer(descriptor);
        shutdown(descriptor, SHUT_WR);
    }
    close(descriptor);
}

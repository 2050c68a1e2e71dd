#pragma once

#include <QByteArrayList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace quorvane::platform {

/// A plain HTTP server on 127.0.0.1 for tests: one request per connection, answered byte by byte by the test.
class TestServer {
public:
    /// Runs on the connection's thread; the descriptor is closed afterwards.
    using Answer = std::function<void(int descriptor)>;

    enum class Start {
        AfterRequest, ///< when the head of a request has come
        AtOnce        ///< without reading anything
    };

    explicit TestServer(Answer connectionAnswer, Start start = Start::AfterRequest);
    ~TestServer();
    TestServer(const TestServer &) = delete;
    TestServer &operator=(const TestServer &) = delete;

    [[nodiscard]] int port() const { return m_number; }

    /// "http://127.0.0.1:PORT" followed by the target.
    [[nodiscard]] QByteArray url(const QByteArray &target = "/") const;

    /// The heads of the requests received so far.
    [[nodiscard]] QByteArrayList requests() const;

    /// True until the server ends; a long answer must check it.
    [[nodiscard]] bool isRunning() const { return !m_ending; }

    /// Sends all bytes; false when the client has closed the connection.
    static bool send(int descriptor, const QByteArray &bytes);
    /// A whole answer with its length.
    static Answer reply(const QByteArray &status, const QByteArray &body, const QByteArray &header = {});

private:
    void serve();
    void handle(int descriptor);

    Answer m_answer;
    Start m_start;
    int m_listener = -1;
    int m_number = 0;
    std::atomic<bool> m_ending = false;
    mutable std::mutex m_mutex;
    QByteArrayList m_received;
    std::vector<std::thread> m_connections;
    std::thread m_thread;
};

} // namespace quorvane::platform

#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace quorvane::service {

/// One notification of an OpenVPN server.
struct ManagementEvent {
    enum class Kind {
        Hold,        ///< the server waits to be released
        State,       ///< `text` is the state's name, as in CONNECTED
        Fatal,       ///< `text` says why the server ends
        Error,       ///< a command was refused; `text` says why
        Connect,     ///< a client logs in: `client`, `key`, `fields`
        Reauth,      ///< a client renews its keys: `client`, `key`, `fields`
        Established, ///< a client's session is up: `client`
        Disconnect   ///< a client is gone: `client`
    };

    Kind kind = Kind::Hold;
    std::uint64_t client = 0;
    std::uint64_t key = 0;
    std::map<std::string, std::string, std::less<>> fields; ///< user, password and peer address only
    std::string text;

    [[nodiscard]] std::string field(std::string_view name) const;
};

/// Cuts the management stream into lines and lines into events.
///
/// Nothing is taken on trust: lines have a length limit, numbers must be numbers, a notification that
/// never ends is dropped by the next one, and what is not known is passed over.
class ManagementParser {
public:
    using Sink = std::function<void(const ManagementEvent &)>;

    static constexpr std::size_t LongestLine = 16384;

    explicit ManagementParser(Sink sink) : m_sink(std::move(sink)) {}

    /// Takes the next bytes, however they were cut. False once a line was over-long: the stream cannot be
    /// trusted any more and the connection is to be closed.
    bool feed(std::string_view bytes);

private:
    void line(std::string_view line);
    void clientLine(std::string_view line);
    void environment(std::string_view assignment);

    Sink m_sink;
    std::string m_rest;
    bool m_broken = false;
    std::optional<ManagementEvent> m_open; ///< a client notification whose fields are still coming
};

} // namespace quorvane::service

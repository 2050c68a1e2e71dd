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
        Hold,        ///< the server waits for "hold release"
        State,       ///< `text` is the name of the new state, such as CONNECTED
        Fatal,       ///< the server ends; `text` is the reason
        Error,       ///< a command was refused; `text` is the reason
        Connect,     ///< a client logs in: `client`, `key`, `fields`
        Reauth,      ///< a client renews its keys: `client`, `key`, `fields`
        Established, ///< a client's session is up: `client`
        Disconnect   ///< a client has disconnected: `client`
    };

    Kind kind = Kind::Hold;
    std::uint64_t client = 0;
    std::uint64_t key = 0;
    std::map<std::string, std::string, std::less<>>
        fields; ///< user, password, peer address and the certificate's grant only
    std::string text;

    /// The field's value, "" when it is absent.
    [[nodiscard]] std::string field(std::string_view name) const;
};

/// Splits the stream of an OpenVPN management connection into lines and parses these to events.
///
/// The stream is not trusted: lines have a length limit, numbers must be numbers, a notification that never
/// ends is dropped when the next one begins, and unknown lines are ignored.
class ManagementParser {
public:
    using Sink = std::function<void(const ManagementEvent &)>;

    static constexpr std::size_t maximumLineLength = 16384;

    explicit ManagementParser(Sink sink) : m_sink(std::move(sink)) {}

    /// Parses the next bytes, which may end anywhere in a line. False once a line was too long: the caller
    /// must then close the connection.
    bool feed(std::string_view bytes);

private:
    void line(std::string_view line);
    void clientLine(std::string_view line);
    void environment(std::string_view assignment);

    Sink m_sink;
    std::string m_incompleteLine;
    bool m_failed = false;
    std::optional<ManagementEvent>
        m_pending; ///< a client notification whose fields have not all been received
};

} // namespace quorvane::service

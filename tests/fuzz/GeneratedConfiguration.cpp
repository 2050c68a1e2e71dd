#include "GeneratedConfiguration.h"

#include "Bytes.h"
#include "guard/AllowList.h"

#include <algorithm>
#include <array>
#include <span>

namespace {

/// A directive and its values: alternatives separated by bars, parameters by blanks. "~" is a blank within a
/// parameter, "%" a number from the one that follows it to the one behind the dash.
struct Form {
    std::string_view name;
    std::string_view values = {};
};

constexpr std::string_view servers =
    "192.0.2.1|192.0.2.2 %1-65535|2001:db8::7 %1-65535 udp6|vpn.example.test %1-65535 udp|192.0.2.3 443 udp4";

constexpr std::array connectionForms{
    Form{"remote", servers},
    Form{"proto", "udp|udp4|udp6"},
    Form{"port", "%1-65535"},
    Form{"rport", "%1-65535"},
    Form{"nobind"},
    Form{"float"},
    Form{"connect-retry", "%1-86400|%1-86400 %1-86400"},
    Form{"connect-retry-max", "%1-1000"},
    Form{"connect-timeout", "%1-86400"},
    Form{"explicit-exit-notify", "|%0-10"},
    Form{"tun-mtu", "%576-9000"},
    Form{"mssfix", "%0-9000"},
    Form{"fragment", "%576-9000"},
    Form{"key-direction", "0|1"},
};

constexpr std::array forms{
    Form{"remote", servers},
    Form{"client"},
    Form{"tls-client"},
    Form{"pull"},
    Form{"dev", "tun|tun%0-999"},
    Form{"dev-type", "tun"},
    Form{"topology", "subnet|net30|p2p"},
    Form{"remote-random"},
    Form{"proto", "udp|udp4|udp6"},
    Form{"port", "%1-65535"},
    Form{"rport", "%1-65535"},
    Form{"nobind"},
    Form{"float"},
    Form{"resolv-retry", "infinite|%0-86400"},
    Form{"connect-retry", "%1-86400|%1-86400 %1-86400"},
    Form{"connect-retry-max", "%1-1000"},
    Form{"connect-timeout", "%1-86400"},
    Form{"server-poll-timeout", "%1-86400"},
    Form{"hand-window", "%1-86400"},
    Form{"tran-window", "%1-86400"},
    Form{"tls-timeout", "%1-86400"},
    Form{"ping", "%1-86400"},
    Form{"ping-exit", "%1-86400"},
    Form{"ping-restart", "%0-86400"},
    Form{"ping-timer-rem"},
    Form{"keepalive", "%1-300 %601-86400"},
    Form{"explicit-exit-notify", "|%0-10"},
    Form{"auth-user-pass"},
    Form{"auth-nocache"},
    Form{"auth-retry", "none|nointeract"},
    Form{"remote-cert-tls", "server"},
    Form{"remote-cert-eku", "TLS~Web~Server~Authentication|1.3.6.1.5.5.7.3.1"},
    Form{"verify-x509-name", "vpn|vpn name|C=DE,~CN=a~(b)* subject|a@b_c+d: name-prefix"},
    Form{"key-direction", "0|1"},
    Form{"cipher", "AES-256-GCM|aes-128-cbc|ChaCha20-Poly1305"},
    Form{"data-ciphers", "AES-256-GCM|aes-256-gcm:AES-128-GCM:chacha20-poly1305|AES-192-CBC:AES-256-CBC"},
    Form{"data-ciphers-fallback", "AES-256-CBC|aes-128-cbc"},
    Form{"auth", "SHA1|sha256|SHA384|Sha512|SHA224"},
    Form{"tls-cipher", "TLS-ECDHE-RSA-WITH-AES-256-GCM-SHA384:TLS-DHE-RSA-WITH-AES-256-CBC-SHA"},
    Form{"tls-ciphersuites", "TLS_AES_256_GCM_SHA384|TLS_CHACHA20_POLY1305_SHA256:TLS_AES_128_GCM_SHA256"},
    Form{"tls-version-min", "1.2|1.3|1.2 or-highest"},
    Form{"tls-version-max", "1.2|1.3"},
    Form{"replay-window", "%1-65536|%1-65536 %1-600"},
    Form{"reneg-sec", "%0-604800|%100-604800 %1-99"},
    Form{"comp-lzo", "no"},
    Form{"allow-compression", "no"},
    Form{"redirect-gateway", "def1|def1 ipv6|def1 bypass-dhcp block-local ipv6"},
    Form{"block-ipv6"},
    Form{"ifconfig-ipv6", "fd00::2/%64-124 fd00::1"},
    Form{"dhcp-option", "DNS 192.0.2.53|DNS 2001:db8::53"},
    Form{"tun-mtu", "%576-9000"},
    Form{"mssfix", "%0-9000"},
    Form{"fragment", "%576-9000"},
    Form{"sndbuf", "%0-16777216"},
    Form{"rcvbuf", "%0-16777216"},
    Form{"persist-key"},
    Form{"persist-tun"},
    Form{"fast-io"},
    Form{"mute-replay-warnings"},
    Form{"verb", "%1-4"},
    Form{"mute", "%1-1000"},
};

constexpr std::array ignoredForms{
    Form{"block-outside-dns"},
    Form{"setenv", "opt block-outside-dns|opt dhcp-renew"},
    Form{"ignore-unknown-option", "register-dns|block-outside-dns dhcp-release dhcp-pre-release"},
};

constexpr std::string_view certificate = R"(-----BEGIN CERTIFICATE-----
MIIBbzCCARWgAwIBAgIUFksMEi35bnplGoHhclICs/bf564wCgYIKoZIzj0EAwIw
DDEKMAgGA1UEAwwBeDAgFw0yNjExMjIyMTI4NTFaGA8yMTI2MTAyOTIxMjg1MVow
DDEKMAgGA1UEAwwBeDBZMBMGByqGSM49AgEGCCqGSM49AwEHA0IABBR7laovNXyq
E+hxCy2VAqNmlF6sCmns6c32kjieZg2i3K9nxM4XGJb4Dyfiv36LIk+0oPw+/iZX
6ZOleXdQRc+jUzBRMB0GA1UdDgQWBBRg6VU1WXpKqKGcVGhfiik4BaHf+zAfBgNV
HSMEGDAWgBRg6VU1WXpKqKGcVGhfiik4BaHf+zAPBgNVHRMBAf8EBTADAQH/MAoG
CCqGSM49BAMCA0gAMEUCIA4wkpod5cWZ8zpd6jEz4Bb8ihApsRllAKBMC+s0aq6o
AiEAx71ocuihirPOmygxfP4ofo+7WtJT6lw/GDrgu6WoNfA=
-----END CERTIFICATE-----
)";

std::string_view alternativeOf(std::string_view values, unsigned number) {
    unsigned count = 1;
    for (const char character : values) {
        count += character == '|' ? 1 : 0;
    }
    for (number %= count; number > 0; --number) {
        values.remove_prefix(values.find('|') + 1);
    }
    return values.substr(0, values.find('|'));
}

/// A number within the bounds of "%FROM-TO"; often one of the bounds themselves.
std::string numberWithin(const std::string &bounds, Bytes &bytes) {
    const unsigned long from = std::stoul(bounds);
    const unsigned long to = std::stoul(bounds.substr(bounds.find('-') + 1));
    switch (bytes.next() % 4) {
    case 0:
        return std::to_string(from);
    case 1:
        return std::to_string(to);
    default:
        return std::to_string(from + (bytes.number() * 257UL) % (to - from + 1));
    }
}

class Generator {
public:
    explicit Generator(std::string_view bytes) : m_bytes(bytes) {}

    GeneratedConfiguration run() {
        const unsigned selected = m_bytes.next();
        if (selected % 8 == 0) {
            m_made.text = "\xEF\xBB\xBF";
        }
        addLine({"client"});
        addLine({"dev", "tun"});
        addLine({"remote", "192.0.2.1", "1194"});
        addBlock("ca", std::string(certificate));
        if (selected == textOnly) {
            addText(m_bytes.text(m_bytes.size()));
        }
        for (unsigned count = 0; count < maximumItems && !m_bytes.areUsedUp(); ++count) {
            addItem();
        }
        if (selected % 16 == 1) {
            fill();
        }
        if (selected % 16 == 2) {
            m_made.text.pop_back();
        }
        return m_made;
    }

private:
    static constexpr unsigned textOnly = '=';
    static constexpr unsigned maximumItems = 60;
    static constexpr std::size_t longestLine = 254;

    void addItem() {
        const unsigned kind = m_bytes.next() % 32;
        if (kind < 24) {
            addDirective(forms);
        } else if (kind == 24) {
            addConnection();
        } else if (kind < 27) {
            addBlock(kind == 25 ? "tls-auth" : "tls-crypt", staticKey());
        } else if (kind == 27) {
            addBlock("extra-certs", std::string(certificate));
        } else if (kind == 28) {
            addComment();
        } else if (kind == 29 && m_bytes.next() % 4 == 0) {
            addDirective(ignoredForms);
        } else if (kind == 30) {
            static constexpr std::array names{"cert", "key", "tls-crypt-v2"};
            addBlock(names[m_bytes.next() % names.size()], blockText());
        } else if (kind == 31) {
            addText(m_bytes.text(m_bytes.next()));
        }
    }

    /// Adds arbitrary text when the guard allows it.
    void addText(const std::string &text) {
        const auto parsed = quorvane::guard::parse(text);
        if (parsed && quorvane::guard::check(parsed.value())) {
            m_made.text += text + "\n";
        }
    }

    void addDirective(std::span<const Form> from) {
        const Form &form = from[m_bytes.next() % from.size()];
        std::vector<std::string> tokens{std::string(form.name)};
        std::string_view rest = alternativeOf(form.values, m_bytes.next());
        while (!rest.empty()) {
            const auto end = rest.find(' ');
            tokens.push_back(parameterOf(rest.substr(0, end)));
            rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        }
        addLine(tokens);
    }

    std::string parameterOf(std::string_view pattern) {
        std::string text(pattern);
        for (char &character : text) {
            character = character == '~' ? ' ' : character;
        }
        const auto number = text.find('%');
        return number == std::string::npos
                   ? text
                   : text.substr(0, number) + numberWithin(text.substr(number + 1), m_bytes);
    }

    std::string blanks(unsigned minimum) {
        std::string text;
        for (unsigned count = minimum + m_bytes.next() % 3; count > 0; --count) {
            text += m_bytes.next() % 4 == 0 ? '\t' : ' ';
        }
        return text;
    }

    /// The token as it may be written.
    std::string written(const std::string &token) {
        const unsigned form = m_bytes.next() % 4;
        if (form == 1 || (form > 1 && token.find(' ') != std::string::npos)) {
            return '\'' + token + '\'';
        }
        return form == 0 ? '"' + token + '"' : token;
    }

    void addLine(const std::vector<std::string> &tokens) {
        std::string line = blanks(0);
        bool isQuoted = true;
        for (const std::string &token : tokens) {
            const std::string form =
                written((&token == tokens.data() && m_bytes.next() % 8 == 0 ? "--" : "") + token);
            // After a closing quote the next token may begin at once.
            line += blanks(isQuoted ? 0 : 1) + form;
            isQuoted = form.front() == '"' || form.front() == '\'';
        }
        endLine(line);
    }

    /// Adds a line with whatever may follow a directive.
    void endLine(std::string line) {
        switch (m_bytes.next() % 8) {
        case 0:
            line += " # up \"x";
            break;
        case 1:
            line += "\t;'";
            break;
        case 2:
            line.resize(std::max(line.size(), longestLine), ' ');
            break;
        case 3:
            line += " #";
            line.resize(std::max(line.size(), longestLine - m_bytes.next() % 3), 'u');
            break;
        default:
            break;
        }
        m_made.text += line + (line.size() < longestLine && m_bytes.next() % 4 == 0 ? "\r\n" : "\n");
    }

    void addComment() { endLine(m_bytes.next() % 2 == 0 ? "# <ca>" : blanks(0)); }

    void addConnection() {
        m_made.text += blanks(0) + "<connection>\n";
        addLine({"remote", "192.0.2." + std::to_string(m_bytes.next()), "1194", "udp"});
        for (unsigned count = m_bytes.next() % 5; count > 0; --count) {
            addDirective(connectionForms);
        }
        m_made.text += blanks(0) + "</connection>" + std::string(m_bytes.next() % 3, ' ') + "\n";
    }

    /// Adds a block whose lines may begin with blanks and end with a carriage return.
    void addBlock(const std::string &name, const std::string &content) {
        std::string block = blanks(0) + "<" + name + ">\n";
        const bool hasReturns = m_bytes.next() % 4 == 0;
        for (std::size_t at = 0; at < content.size();) {
            const auto end = content.find('\n', at);
            block += content.substr(at, end - at) + (hasReturns ? "\r\n" : "\n");
            at = end + 1;
        }
        block += blanks(0) + "</" + name + ">" + std::string(m_bytes.next() % 3, ' ') + "\n";
        m_made.text += block;
        if (name != "cert" && name != "key" && name != "tls-crypt-v2") {
            m_made.keyBlocks += block;
        }
    }

    std::string blockText() {
        std::string text;
        for (unsigned lines = m_bytes.next() % 4; lines > 0; --lines) {
            for (unsigned count = m_bytes.next() % longestLine; count > 0; --count) {
                text += static_cast<char>(' ' + m_bytes.next() % ('~' - ' '));
            }
            text += "\n";
        }
        // No end tag within.
        for (char &character : text) {
            character = character == '<' ? '>' : character;
        }
        return text;
    }

    /// A key for the control channel, in lines of an odd form.
    std::string staticKey() {
        static constexpr std::string_view digits = "0123456789abcdefABCDEF";
        std::string text = "# \"a comment\\\n-----BEGIN OpenVPN Static key V1-----\n";
        unsigned seed = m_bytes.number();
        const unsigned lineLength = 16U << m_bytes.next() % 4;
        for (unsigned count = 0; count < 512; ++count) {
            seed = seed * 1103515245 + 12345;
            text += digits[(seed >> 16U) % digits.size()];
            if (count % lineLength == lineLength - 1) {
                text += m_bytes.next() % 8 == 0 ? " \n\t" : "\n";
            }
        }
        if (text.back() != '\n') {
            text += "\n";
        }
        return text + "-----END OpenVPN Static key V1-----\n";
    }

    /// Makes it as large as a configuration may be.
    void fill() {
        const std::size_t size = quorvane::guard::maximumConfigurationSize;
        while (m_made.text.size() + 2 <= size) {
            const std::size_t length = std::min(longestLine, size - m_made.text.size() - 1);
            m_made.text += '#' + std::string(length - 1, 'x') + '\n';
        }
        m_made.text.resize(std::max(m_made.text.size(), size), '\n');
    }

    Bytes m_bytes;
    GeneratedConfiguration m_made;
};

} // namespace

GeneratedConfiguration generateConfiguration(std::string_view bytes) {
    return Generator(bytes).run();
}

std::vector<std::string_view> generatedNames() {
    std::vector<std::string_view> all{"connection", "ca",           "extra-certs", "tls-auth",
                                      "tls-crypt",  "tls-crypt-v2", "cert",        "key"};
    for (const Form &form : forms) {
        all.push_back(form.name);
    }
    for (const Form &form : ignoredForms) {
        all.push_back(form.name);
    }
    return all;
}

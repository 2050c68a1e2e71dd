#include "Answers.h"

namespace quorvane::service {

namespace {

constexpr std::string_view lineMark = "<br />";

std::string htmlEscaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string page(std::string_view title, const std::string &body) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" +
           htmlEscaped(title) +
           "</title>\n<style>\n"
           "body{font-family:sans-serif;max-width:36rem;margin:4rem auto;padding:0 1rem;line-height:1.5;"
           "color:#222;background:#fff}\n"
           ".address{font-size:2rem;font-weight:bold}\n"
           "@media(prefers-color-scheme:dark){body{color:#ddd;background:#1b1b1b}}\n"
           "</style>\n</head>\n<body>\n<main>\n" +
           body + "</main>\n</body>\n</html>\n";
}

} // namespace

std::string joinLines(const std::vector<std::string> &lines) {
    std::string joined;
    for (const std::string &line : lines) {
        if (!joined.empty()) {
            joined += lineMark;
        }
        joined += line;
    }
    return joined;
}

std::string serverRecord(std::size_t number, const Group &group) {
    std::string record = std::to_string(number) + ',' + group.city + ',' + group.locationCode + ',' +
                         group.countryCode + ',' + group.country + ',' + (group.full ? '1' : '0') + '|';
    for (std::size_t i = 0; i < group.addresses.size(); ++i) {
        record += (i == 0 ? "" : ",") + group.addresses[i].text();
    }
    return record;
}

std::string locationRecord(const Group &group) {
    return group.countryCode + ';' + group.locationCode + ';' + group.label + ';' + (group.full ? '1' : '0');
}

std::string serverListAnswer(const Config &config, const std::vector<Group> &offered, std::string_view peer,
                             const Credentials &credentials) {
    std::string locations;
    for (const Group &group : offered) {
        locations += (locations.empty() ? "" : "|") + locationRecord(group);
    }
    std::vector<std::string> lines = {"STATUS: 0",
                                      "ClientIP: " + std::string(peer),
                                      "CC: " + config.countryOf(peer),
                                      "LOCATIONS: " + locations,
                                      "VPNUser: " + credentials.user,
                                      "VPNPass: " + credentials.password};
    for (std::size_t i = 0; i < offered.size(); ++i) {
        lines.push_back("Server: " + serverRecord(i + 1, offered[i]));
    }
    return joinLines(lines);
}

std::string statusAnswer(int status, std::string_view peer) {
    return joinLines({"STATUS: " + std::to_string(status), "ClientIP: " + std::string(peer)});
}

std::string configurationAnswer(std::string_view configuration) {
    std::string answer = "VPNConfig: ";
    for (const char character : configuration) {
        if (character == '\n') {
            answer += lineMark;
        } else {
            answer += character;
        }
    }
    return answer;
}

std::string webPage(std::string_view peer, std::string_view country) {
    return page("Quorvane", "<h1>Quorvane</h1>\n<p>Websites that you visit see this address:</p>\n"
                            "<p class=\"address\" id=\"address\">" +
                                htmlEscaped(peer) + "</p>\n<p>Country: <span id=\"country\">" +
                                htmlEscaped(country == "XX" ? "unknown" : country) +
                                "</span></p>\n<p>With Quorvane running, the address above is a lent one and "
                                "not your own.</p>\n<p><a href=\"/ip\">Check again</a></p>\n");
}

std::string errorPage(int status, std::string_view title, std::string_view sentence) {
    const std::string heading = std::to_string(status) + ' ' + std::string(title);
    return page(heading, "<h1>" + htmlEscaped(heading) + "</h1>\n<p>" + htmlEscaped(sentence) + "</p>\n");
}

} // namespace quorvane::service

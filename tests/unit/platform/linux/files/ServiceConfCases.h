#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <vector>

namespace quorvane::platform {

/// What service.conf files say, for the program and for the script that reads them.
struct ServiceConfCase {
    const char *name;
    QByteArrayList files; ///< the files' content, the one that overrides last
    QByteArray webHost;
    QByteArray caFile;
};

/// Values that are no host.
inline constexpr const char *badHosts[] = {"https://b.test", "b.test/path",  "b c",         "b.test:",
                                           "b.test:0",       "b.test:65536", "b.test:0443", "b.test:44a",
                                           "b.test:443:443", "b.test: 443",  ":443",        "-b.test",
                                           "b-.test",        "b..test",      ".b.test",     "b.test.",
                                           "b_c.test",       "user@b.test",  "$(id)",       "19",
                                           "0x7f",           "1.2.3",        "1.2.3.256",   "1.2.3.04",
                                           "1.2.3.4.5",      "b.1",          "b.0x1",       "::1",
                                           "[::1]",          "[::1]:443",    "[",           "[]",
                                           "b*.test",        "b.test\\"};

inline std::vector<ServiceConfCase> serviceConfCases() {
    const QByteArray label(63, 'a');
    const QByteArray longest = label + '.' + label + '.' + label + '.' + QByteArray(61, 'a');
    std::vector<ServiceConfCase> cases{
        {"nothing", {""}, "", ""},
        {"plain", {"web_host = w.test\nca_file = /ca.crt\n"}, "w.test", "/ca.crt"},
        {"no white space", {"web_host=w.test\nca_file=/ca.crt\n"}, "w.test", "/ca.crt"},
        {"much white space",
         {" \t web_host \t=\t  w.test \t \n\v\fca_file\f=\v/ca.crt\v\n"},
         "w.test",
         "/ca.crt"},
        {"white space beyond ASCII", {"web_host = a.test\nweb_host = \xc2\xa0w.test\n"}, "a.test", ""},
        {"blank inside a path", {"ca_file = /my ca.crt\n"}, "", "/my ca.crt"},
        {"carriage returns", {"web_host = w.test\r\nca_file = /ca.crt\r\n"}, "w.test", "/ca.crt"},
        {"carriage returns alone", {"web_host = w.test\rca_file = /ca.crt\r"}, "", ""},
        {"no line feed at the end", {"ca_file = /ca.crt\nweb_host = w.test"}, "w.test", "/ca.crt"},
        {"no line feed between files", {"web_host = a.test", "ca_file = /ca.crt"}, "a.test", "/ca.crt"},
        {"byte order mark", {"\xef\xbb\xbfweb_host = w.test\n"}, "w.test", ""},
        {"byte order mark later", {"web_host = a.test\n\xef\xbb\xbfweb_host = b.test\n"}, "a.test", ""},
        {"comment lines", {"# web_host = a.test\n  # ca_file = /a\nweb_host = w.test\n"}, "w.test", ""},
        {"comment behind a value", {"web_host = w.test # ours\nca_file = /a# b\n"}, "w.test", "/a"},
        {"comment inside a value", {"web_host = w.te#st\nca_file = #/a\n"}, "w.te", ""},
        {"comment before the equals sign", {"web_host # = w.test\n"}, "", ""},
        {"repeated key",
         {"web_host = a.test\nca_file = /a\nweb_host = b.test\nca_file = /b\n"},
         "b.test",
         "/b"},
        {"overriding file", {"web_host = a.test\nca_file = /a\n", "web_host = b.test\n"}, "b.test", "/a"},
        {"emptied path", {"ca_file = /a\n", "ca_file =\n"}, "", ""},
        {"empty host", {"web_host = a.test\nweb_host =\n"}, "a.test", ""},
        {"relative path", {"ca_file = /a\nca_file = b\n"}, "", "/a"},
        {"key in other letters", {"WEB_HOST = w.test\nCa_File = /a\n"}, "", ""},
        {"unknown keys", {"web_hosts = w.test\nweb_host.x = w.test\nca file = /a\n"}, "", ""},
        {"lines of another form", {"web_host w.test\n= w.test\n==\nweb_host == w.test\n"}, "", ""},
        {"second equals sign", {"ca_file = /a=b\n"}, "", "/a=b"},
        {"large letters",
         {"web_host = WWW.Example.Test:8443\nca_file = /CA\n"},
         "www.example.test:8443",
         "/CA"},
        {"large letters beyond ASCII", {"web_host = a.test\nweb_host = \xe2\x84\xaa.test\n"}, "a.test", ""},
        {"path beyond ASCII", {"ca_file = /\xc3\xa4\n"}, "", "/\xc3\xa4"},
        {"not UTF-8", {"web_host = a.test\n", "web_host = b.test\n# \xc3\x28\n"}, "a.test", ""},
        {"surrogates", {"web_host = a.test\n", "web_host = b.test\n# \xed\xa0\x80\n"}, "a.test", ""},
        {"beyond Unicode", {"web_host = a.test\n", "web_host = b.test\n# \xf4\x90\x80\x80\n"}, "a.test", ""},
        {"overlong", {"web_host = a.test\n", "web_host = b.test\n# \xc0\xaf\n"}, "a.test", ""},
        {"zero byte", {"web_host = a.test\n", QByteArray("web_host = b.test\n#\0\n", 21)}, "a.test", ""},
        {"largest file", {"web_host = w.test\n#" + QByteArray(64 * 1024 - 19, 'x')}, "w.test", ""},
        {"file too large", {"web_host = w.test\n#" + QByteArray(64 * 1024 - 18, 'x')}, "", ""},
        {"longest name", {"web_host = " + longest + ":1\n"}, longest + ":1", ""},
        {"name too long", {"web_host = " + longest + "a\n"}, "", ""},
        {"one label", {"web_host = localhost\n"}, "localhost", ""},
        {"digits in a name", {"web_host = 3.a-1.b2\n"}, "3.a-1.b2", ""},
        {"address", {"web_host = 192.0.2.255:65535\n"}, "192.0.2.255:65535", ""},
    };
    for (const char *bad : badHosts) {
        cases.push_back({bad, {"web_host = a.test\nweb_host = " + QByteArray(bad) + '\n'}, "a.test", ""});
    }
    cases.push_back({"label too long", {"web_host = a" + label + ".test\n"}, "", ""});
    return cases;
}

} // namespace quorvane::platform

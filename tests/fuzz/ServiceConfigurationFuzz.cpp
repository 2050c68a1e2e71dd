#include "Fuzz.h"
#include "platform/ServiceConfiguration.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace quorvane;

namespace {

using platform::ServiceConfiguration;

/// Two files in a folder that is removed with the program.
class Files {
public:
    Files() { must(m_folder.isValid(), "a temporary folder can be created"); }

    [[nodiscard]] QString write(const QString &name, std::string_view bytes) const {
        QFile file(m_folder.filePath(name));
        must(file.open(QIODevice::WriteOnly | QIODevice::Truncate), "a file can be written");
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};

void checkHost(const QString &host, bool portAllowed) {
    if (host.isEmpty()) {
        return;
    }
    must(host == host.toLower(), "a host has lower-case letters");
    must(std::all_of(host.begin(), host.end(),
                     [](QChar unit) {
                         return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9') ||
                                QStringLiteral(".-:[]").contains(unit);
                     }),
         "a host holds nothing that would be a mark of a URL's other parts");
    const QString port = host.mid(host.lastIndexOf(u']') + 1).section(u':', 1);
    must(portAllowed || port.isEmpty(), "no port where none is allowed");
    must(port.isEmpty() || (port.toInt() >= 1 && port.toInt() <= 65535), "a port is in range");
}

void check(const ServiceConfiguration &configuration, const QStringList &paths) {
    checkHost(configuration.apiHost, true);
    checkHost(configuration.webHost, true);
    checkHost(configuration.reachabilityHost, false);
    must(configuration.caFile.isEmpty() || configuration.caFile.startsWith(u'/'), "a path is absolute");
    for (const QString &problem : configuration.problems) {
        must(!problem.contains(u'\n'), "a problem is one line");
        must(std::any_of(paths.begin(), paths.end(),
                         [&problem](const QString &path) { return problem.startsWith(path); }),
             "a problem names its file");
    }
}

void checkOverride(const QString &first, const QString &second, const QString &both) {
    must(both == (second.isEmpty() ? first : second), "the values of the later file count");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    static const Files files;
    // The first NUL byte separates the two files.
    const auto cut = std::min(bytes.find('\0'), bytes.size());
    const QString one = files.write(QStringLiteral("one"), bytes.substr(0, cut));
    const QString two = files.write(QStringLiteral("two"), bytes.substr(std::min(cut + 1, bytes.size())));
    const auto first = ServiceConfiguration::read({one});
    const auto second = ServiceConfiguration::read({two});
    const auto both = ServiceConfiguration::read({one, two});
    for (const ServiceConfiguration &configuration : {first, second, both}) {
        check(configuration, {one, two});
    }
    checkOverride(first.apiHost, second.apiHost, both.apiHost);
    checkOverride(first.webHost, second.webHost, both.webHost);
    checkOverride(first.reachabilityHost, second.reachabilityHost, both.reachabilityHost);
    must(both.problems == first.problems + second.problems, "every file's problems are reported, in order");
}

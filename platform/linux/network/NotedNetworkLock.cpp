#include "NotedNetworkLock.h"

#include "HostLookUp.h"
#include "platform/Files.h"

#include <QFileInfo>
#include <QFileSystemWatcher>

#include <algorithm>

namespace quorvane::platform {

namespace {

constexpr qint64 largestNote = 64 * 1024;
/// The script accepts more; no service needs them.
constexpr qsizetype mostAddresses = 64;

QByteArrayList lookUpTexts(const QByteArray &host) {
    QByteArrayList texts;
    for (const std::uint32_t address : lookUpHost(host)) {
        texts.append(addressText(address));
    }
    return texts;
}

} // namespace

NotedNetworkLock::NotedNetworkLock(const QString &note, const ServiceConfiguration &service,
                                   std::shared_ptr<KeptAddresses> addresses, LookUp lookUp)
    : m_note(note), m_addresses(std::move(addresses)), m_lookUp(lookUp ? std::move(lookUp) : lookUpTexts) {
    if (!service.apiHost.startsWith(u'[')) {
        m_apiHost = service.apiHost.section(u':', 0, 0).toLatin1();
        const QByteArray port = service.apiHost.section(u':', 1, 1).toLatin1();
        m_apiPort = port.isEmpty() ? QByteArray("443") : port;
    }
    readNote();
}

NotedNetworkLock::~NotedNetworkLock() = default;

bool NotedNetworkLock::isClosed() const {
    return QFileInfo::exists(m_note);
}

void NotedNetworkLock::setObserver(std::function<void()> changed) {
    m_watcher.reset();
    if (!changed) {
        return;
    }
    // The folder, because the note is replaced and removed.
    m_watcher = std::make_unique<QFileSystemWatcher>(QStringList{QFileInfo(m_note).path()});
    QObject::connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, m_watcher.get(),
                     [this, changed = std::move(changed), last = isClosed()]() mutable {
                         if (last != isClosed()) {
                             last = !last;
                             changed();
                         }
                     });
}

void NotedNetworkLock::readNote() {
    QByteArray text;
    if (readPlainFile(m_note, largestNote, text) != 0) {
        return;
    }
    const QByteArray beginning = m_apiHost + ':' + m_apiPort + '/';
    QByteArrayList noted;
    for (const QByteArray &line : text.split('\n')) {
        const auto address =
            line.startsWith(beginning) ? numericAddress(line.mid(beginning.size())) : std::nullopt;
        if (address && noted.size() < mostAddresses) {
            noted.append(addressText(*address));
        }
    }
    m_addresses->keep(m_apiHost, noted);
}

void NotedNetworkLock::keepServiceAddresses() {
    const QByteArrayList found = m_apiHost.isEmpty() ? QByteArrayList() : m_lookUp(m_apiHost);
    if (!found.isEmpty()) {
        m_addresses->keep(m_apiHost, found.first(std::min(found.size(), mostAddresses)));
    }
}

QStringList NotedNetworkLock::serviceAddresses() const {
    QStringList words;
    for (const QByteArray &address : m_addresses->find(m_apiHost)) {
        words.append(QString::fromLatin1(m_apiHost + ':' + m_apiPort + '/' + address));
    }
    return words;
}

} // namespace quorvane::platform

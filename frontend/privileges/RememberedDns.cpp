#include "RememberedDns.h"

#include "frontend/support/Preferences.h"
#include "platform/Platform.h"
#include "platform/ScriptingService.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr qsizetype mostAddresses = 16;
constexpr qsizetype longestAddress = 45;

bool isAddress(const QString &word) {
    const bool hasOnlyItsCharacters = std::all_of(word.begin(), word.end(), [](QChar unit) {
        const char16_t code = unit.unicode();
        return (code >= u'0' && code <= u'9') || (code >= u'a' && code <= u'f') ||
               (code >= u'A' && code <= u'F') || code == u'.' || code == u':';
    });
    return word.size() > 1 && word.size() <= longestAddress && hasOnlyItsCharacters;
}

/// Whether the words may be a part of a line for root's shell: addresses and our own two words only.
bool areWords(const QString &text) {
    if (text == QStringLiteral("empty")) {
        return true;
    }
    QStringList words = text.split(u' ');
    if (words.size() > 1 && words.constLast() == QStringLiteral("automatic")) {
        words.removeLast();
    }
    return words.size() <= mostAddresses && std::all_of(words.begin(), words.end(), isAddress);
}

} // namespace

const QStringList &RememberedDns::services() {
    // "AirPort" is the former name of the wireless service.
    static const QStringList names{QStringLiteral("Ethernet"), QStringLiteral("Wi-Fi"),
                                   QStringLiteral("AirPort")};
    return names;
}

RememberedDns RememberedDns::stored() {
    RememberedDns remembered;
    const QStringList entries = Preferences::text(Preference::DnsBefore).split(u'|');
    for (const QString &entry : entries) {
        const QString service = entry.section(u'=', 0, 0);
        const QString words = entry.section(u'=', 1);
        if (services().contains(service) && areWords(words)) {
            remembered.m_words[service] = words;
        }
    }
    return remembered;
}

void RememberedDns::update(const QString &ours) {
    for (const QString &service : services()) {
        const platform::ScriptResult result = platform::Platform::current().scripting->runAsUser(
            QStringLiteral("networksetup -getdnsrestore ") + service);
        const QString words = result.text.trimmed();
        const bool isOurChange = words == ours && m_words.contains(service);
        if (result.succeeded && areWords(words) && !isOurChange) {
            m_words[service] = words;
        }
    }
}

void RememberedDns::store() const {
    QStringList entries;
    for (const QString &service : services()) {
        if (const auto found = m_words.find(service); found != m_words.end()) {
            entries.append(service + QChar(u'=') + found->second);
        }
    }
    Preferences::store(
        {{Preference::DnsBefore, entries.isEmpty() ? QVariant() : QVariant(entries.join(u'|'))}});
}

QString RememberedDns::words(const QString &service) const {
    const auto found = m_words.find(service);
    return found != m_words.end() ? found->second : QString();
}

void RememberedDns::forget(const QString &service) {
    m_words.erase(service);
}

} // namespace quorvane

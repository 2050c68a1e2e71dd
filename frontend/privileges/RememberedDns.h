#pragma once

#include <QString>
#include <QStringList>
#include <map>

namespace quorvane {

/// The DNS servers that the network services had before this program changed them. Each service has the words
/// that "networksetup -setdnsservers" needs to bring them back: "empty" (automatic), addresses, or addresses
/// and "automatic" (both). They are stored in the preferences, so that they outlive a crash and a reboot. Any
/// thread; one at a time.
class RememberedDns {
public:
    /// The services that the program changes, in their order.
    [[nodiscard]] static const QStringList &services();

    /// What is stored; a service whose stored words are malformed is left out.
    [[nodiscard]] static RememberedDns stored();
    /// Reads as the user what each service has now. One that has exactly our servers keeps its former words,
    /// since it was this program that changed it; one that cannot be read keeps them, too. Blocks.
    void update(const QString &ours);
    /// Replaces what is stored.
    void store() const;

    [[nodiscard]] bool isEmpty() const { return m_words.empty(); }

    /// Null when nothing is remembered of the service.
    [[nodiscard]] QString words(const QString &service) const;
    void forget(const QString &service);

private:
    std::map<QString, QString> m_words;
};

} // namespace quorvane

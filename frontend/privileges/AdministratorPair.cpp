#include "AdministratorPair.h"

#include "frontend/support/Preferences.h"

#include <ctime>
#include <mutex>
#include <random>

namespace quorvane {

namespace {

/// This generator is never seeded: it only chooses between the three families of characters.
std::uint_fast32_t drawFamily() {
    static std::mutex mutex;
    static std::mt19937 engine; // NOLINT(bugprone-random-generator-seed): unseeded by design
    const std::lock_guard lock(mutex);
    return engine() % 3;
}

QChar randomAlphaNumeric(std::mt19937 &engine) {
    switch (drawFamily()) {
    case 2:
        return QChar(static_cast<char16_t>(u'a' + engine() % 26));
    case 1:
        return QChar(static_cast<char16_t>(u'A' + engine() % 26));
    default:
        return QChar(static_cast<char16_t>(u'0' + engine() % 10));
    }
}

QVariant valueOf(const QString &scrambled) {
    return scrambled.isNull() ? QVariant() : QVariant(scrambled);
}

} // namespace

AdministratorPair AdministratorPair::stored() {
    return {decode(Preferences::text(Preference::AdministratorName)),
            decode(Preferences::text(Preference::AdministratorPassword))};
}

void AdministratorPair::store(const QString &user, const QString &password) {
    Preferences::choose({{Preference::AdministratorName, valueOf(encode(user))},
                         {Preference::AdministratorPassword, valueOf(encode(password))}});
}

QString AdministratorPair::encode(const QString &text) {
    if (text.isEmpty()) {
        return {};
    }
    std::mt19937 engine(static_cast<std::mt19937::result_type>(std::time(nullptr)));
    QString scrambled;
    scrambled.reserve(2 * text.size() + 1);
    for (const QChar unit : text) {
        scrambled += unit;
        scrambled += randomAlphaNumeric(engine);
    }
    scrambled += QChar(u'\0');
    return scrambled;
}

QString AdministratorPair::decode(const QString &text) {
    if (text.size() < 2) {
        return {};
    }
    QString plain;
    for (qsizetype i = 0; i < text.size() / 2; ++i) {
        plain += text.at(2 * i);
    }
    return plain;
}

} // namespace quorvane

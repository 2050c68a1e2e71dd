#include "Steps.h"

#include <QStringList>
#include <array>

namespace quorvane::simulation {

namespace {

struct Entry {
    const char *name;
    int weight; ///< how often it is drawn, compared with the others
};

constexpr std::array<Entry, 42> entries{{{"begin", 0},         {"press", 60},
                                         {"hot-key-hide", 20}, {"hot-key-change", 25},
                                         {"hot-key-stop", 20}, {"hot-key-discard", 15},
                                         {"tray-hide", 15},    {"change", 15},
                                         {"choose", 25},       {"us-only", 10},
                                         {"change-every", 10}, {"same-ip", 6},
                                         {"apply", 6},         {"interval", 6},
                                         {"protocol", 3},      {"stored-configuration", 4},
                                         {"reconnect", 4},     {"stored-pair", 6},
                                         {"lock-wanted", 5},   {"lock-works", 8},
                                         {"lift", 15},         {"unlock", 4},
                                         {"refresh", 25},      {"answer", 60},
                                         {"fail-answer", 10},  {"finish", 260},
                                         {"work", 40},         {"service", 15},
                                         {"address", 25},      {"log", 90},
                                         {"openvpn-ends", 30}, {"guard", 8},
                                         {"pair", 12},         {"network", 12},
                                         {"close", 50},        {"clock", 120},
                                         {"sleep", 8},         {"command", 30},
                                         {"start-vpn", 8},     {"check-pair", 5},
                                         {"update-list", 6},   {"quit", 0}}};

} // namespace

QString written(const Steps &steps) {
    QStringList texts;
    for (const Step &step : steps) {
        texts.append(QStringLiteral("%1 %2")
                         .arg(QLatin1String(entries.at(static_cast<std::size_t>(step.kind)).name))
                         .arg(step.argument));
    }
    return texts.join(QStringLiteral(", "));
}

std::optional<Steps> read(const QString &text) {
    Steps steps;
    for (const QString &part : text.split(u',', Qt::SkipEmptyParts)) {
        const QStringList words = part.simplified().split(u' ');
        bool isNumber = false;
        const unsigned argument = words.last().toUInt(&isNumber);
        std::size_t kind = 0;
        while (kind < entries.size() && words.first() != QLatin1String(entries.at(kind).name)) {
            ++kind;
        }
        if (words.size() != 2 || !isNumber || kind == entries.size()) {
            return std::nullopt;
        }
        steps.append({static_cast<Kind>(kind), argument});
    }
    return steps;
}

Steps drawn(std::mt19937_64 &random, int count) {
    std::array<double, entries.size()> weights{};
    for (std::size_t i = 0; i < entries.size(); ++i) {
        weights.at(i) = entries.at(i).weight;
    }
    std::discrete_distribution<int> kinds(weights.begin(), weights.end());
    std::uniform_int_distribution<unsigned> arguments(0, 15);
    Steps steps{{Kind::Begin, arguments(random)},
                {Kind::LockWanted, arguments(random)},
                {Kind::Stored, arguments(random)},
                {Kind::Network, 1}};
    if (arguments(random) > 3) { // else what follows begins before the first answer
        steps.append({Kind::Answer, arguments(random) % 3});
    }
    while (steps.size() < count - 1) {
        steps.append({static_cast<Kind>(kinds(random)), arguments(random)});
    }
    steps.append({Kind::Quit, 0});
    return steps;
}

} // namespace quorvane::simulation

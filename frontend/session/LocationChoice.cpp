#include "LocationChoice.h"

#include <vector>

namespace quorvane {

LocationChoice::LocationChoice(Random random) : m_random(std::move(random)) {}

QString LocationChoice::randomTitle() {
    return QStringLiteral("Random Location");
}

std::optional<LocationChoice::Entry> LocationChoice::pickUnused(const Locations &list, int count,
                                                                const std::function<int(int)> &rowAt,
                                                                qsizetype resetSize) {
    if (m_used.size() == resetSize) {
        m_used.clear();
    }
    bool anyLeft = false;
    for (int i = 0; i < count && !anyLeft; ++i) {
        anyLeft = !m_used.contains(list.idAt(rowAt(i)));
    }
    if (!anyLeft) {
        return std::nullopt;
    }
    for (;;) {
        const int row = rowAt(static_cast<int>(m_random() % static_cast<quint32>(count)));
        if (const quint64 id = list.idAt(row); !m_used.contains(id)) {
            m_used.insert(id);
            return list.entryAt(row);
        }
    }
}

LocationChoice::Outcome LocationChoice::choose(const Request &request) {
    Outcome outcome;
    const int count = request.list.count();
    if (count <= 1) {
        return outcome;
    }
    const quint64 randomEntry = request.list.idAt(0);
    std::optional<Entry> candidate = request.candidate;
    if (candidate && m_used.contains(candidate->id)) {
        candidate.reset();
        outcome.selection = randomEntry;
    }
    // Compared with the country code, not with an address: a discarded row with a country code discards the
    // country.
    if (candidate && candidate->data && request.isDiscarded(candidate->data->countryCode)) {
        candidate.reset();
        outcome.selection = randomEntry;
    }
    std::optional<Entry> pick;
    if (request.usOnly) {
        std::vector<int> american;
        for (int row = 0; row < count; ++row) {
            if (request.list.isAmerican(row)) {
                american.push_back(row);
            }
        }
        if (american.empty()) {
            outcome.result = Result::NoUnitedStates;
            return outcome;
        }
        const int size = static_cast<int>(american.size());
        pick = pickUnused(
            request.list, size, [&american](int i) { return american[static_cast<std::size_t>(i)]; }, size);
        outcome.updatesLocationText = pick.has_value();
    } else if (candidate && candidate->title != randomTitle()) {
        pick = candidate;
    } else {
        // The used set is compared with the size of the whole list including entry 0, which picks never
        // reach.
        pick = pickUnused(
            request.list, count - 1, [](int i) { return i + 1; }, count);
        if (pick) {
            outcome.selection = pick->id;
            outcome.updatesLocationText = true;
        }
    }
    if (!pick) {
        outcome.result = Result::AllUsed;
        return outcome;
    }
    if (request.automaticChange) {
        outcome.selection = randomEntry;
    }
    outcome.pick = *pick;
    const bool usable = pick->data && !pick->data->filteredIpAdressArray.isEmpty();
    outcome.result = usable ? Result::Picked : Result::NothingToPick;
    return outcome;
}

} // namespace quorvane

#include "LocationChoice.h"

#include <algorithm>

namespace quorvane {

LocationChoice::LocationChoice(Random random) : m_random(std::move(random)) {}

QString LocationChoice::randomTitle() {
    return QStringLiteral("Random Location");
}

std::optional<LocationChoice::Entry> LocationChoice::pickUnused(const QList<Entry> &candidates,
                                                                qsizetype resetSize) {
    if (m_used.size() == resetSize) {
        m_used.clear();
    }
    const bool anyLeft = std::any_of(candidates.begin(), candidates.end(),
                                     [this](const Entry &entry) { return !m_used.contains(entry.id); });
    if (!anyLeft) {
        return std::nullopt;
    }
    for (;;) {
        const Entry &entry =
            candidates.at(static_cast<qsizetype>(m_random() % static_cast<quint32>(candidates.size())));
        if (!m_used.contains(entry.id)) {
            m_used.insert(entry.id);
            return entry;
        }
    }
}

LocationChoice::Outcome LocationChoice::choose(const Request &request) {
    Outcome outcome;
    if (request.list.size() <= 1) {
        return outcome;
    }
    const quint64 randomEntry = request.list.first().id;
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
        QList<Entry> american;
        std::copy_if(
            request.list.begin(), request.list.end(), std::back_inserter(american),
            [](const Entry &entry) { return entry.data && entry.data->countryCode == QLatin1String("US"); });
        if (american.isEmpty()) {
            outcome.result = Result::NoUnitedStates;
            return outcome;
        }
        pick = pickUnused(american, american.size());
        outcome.updatesLocationText = pick.has_value();
    } else if (candidate && candidate->title != randomTitle()) {
        pick = candidate;
    } else {
        // The used set is compared with the size of the whole list including entry 0, which picks never
        // reach.
        pick = pickUnused(request.list.sliced(1), request.list.size());
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

#pragma once

#include "LocationChoice.h"

namespace quorvane {

class DiscardedAddresses;
class LocationList;
class QrvAPI;

/// Decides which address is requested next: picks a location by the user's choice and preferences, and
/// discards the address in use. Main thread. Collaborators are not owned and must outlive this.
class LocationRotation {
public:
    LocationRotation(QrvAPI &api, LocationList &list, DiscardedAddresses &discarded,
                     LocationChoice::Random random);

    /// Picks the location of one attempt, which becomes lastItem(), and selects what the pick selects.
    [[nodiscard]] LocationChoice::Result pick();

    /// Discards the address of the last pick. Without another usable address its location leaves the list.
    void discardLastAddress();

    [[nodiscard]] const LocationChoice::Entry &lastItem() const { return m_last; }

    [[nodiscard]] const QSet<quint64> &usedItems() const { return m_choice.usedItems(); }

    void setUsedItems(const QSet<quint64> &items) { m_choice.setUsedItems(items); }

private:
    [[nodiscard]] LocationChoice::Request request() const;

    QrvAPI &m_api;
    LocationList &m_list;
    DiscardedAddresses &m_discarded;
    LocationChoice m_choice;
    LocationChoice::Entry m_last;
};

} // namespace quorvane

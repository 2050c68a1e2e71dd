#pragma once

#include "frontend/api/QrvVpnData.h"

#include <QSet>
#include <QString>
#include <functional>
#include <optional>

namespace quorvane {

/// The rule that picks the location of one connection attempt. It uses no window and sends nothing. Holds the
/// set of entries that random picks of the current rotation have used.
class LocationChoice {
public:
    /// One entry of the location list, identified by its number: a rebuilt list consists of new entries.
    struct Entry {
        quint64 id = 0;
        QString title;
        QrvVpnDataPointer data; ///< null for "Random Location"
    };

    /// The location list, read where it is: it can be long. Row 0 is "Random Location".
    class Locations {
    public:
        virtual ~Locations() = default;
        [[nodiscard]] virtual int count() const = 0;
        [[nodiscard]] virtual quint64 idAt(int row) const = 0;
        [[nodiscard]] virtual Entry entryAt(int row) const = 0;
        /// Whether the row's country code is "US"; false for row 0.
        [[nodiscard]] virtual bool isAmerican(int row) const = 0;
    };

    struct Request {
        const Locations &list; ///< not owned
        std::optional<Entry> candidate;
        bool usOnly = false;
        bool automaticChange = false;
        /// Whether the discarded table has a row equal to the text.
        std::function<bool(const QString &)> isDiscarded;
    };

    enum class Result {
        Picked,
        NothingToPick, ///< the list has only "Random Location", or the pick has no usable address
        AllUsed,       ///< every candidate was used in this rotation; a later call may succeed
        NoUnitedStates ///< US-only with no such location
    };

    struct Outcome {
        Result result = Result::NothingToPick;
        Entry pick;                       ///< meaningful when Picked
        std::optional<quint64> selection; ///< the entry to select; absent to keep the selection
        bool updatesLocationText = false; ///< the current location text becomes the pick's title
    };

    /// A uniformly distributed 32-bit value per call.
    using Random = std::function<quint32()>;

    explicit LocationChoice(Random random);

    [[nodiscard]] Outcome choose(const Request &request);

    [[nodiscard]] const QSet<quint64> &usedItems() const { return m_used; }

    void setUsedItems(const QSet<quint64> &used) { m_used = used; }

    [[nodiscard]] static QString randomTitle();

private:
    /// A random row of those that rowAt returns for 0 to count - 1, if any is unused.
    [[nodiscard]] std::optional<Entry> pickUnused(const Locations &list, int count,
                                                  const std::function<int(int)> &rowAt, qsizetype resetSize);

    Random m_random;
    QSet<quint64> m_used;
};

} // namespace quorvane

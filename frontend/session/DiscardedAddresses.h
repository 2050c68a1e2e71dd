#pragma once

#include <QStringList>

namespace quorvane {

/// The addresses that the user does not want again. Main thread.
class DiscardedAddresses {
public:
    virtual ~DiscardedAddresses() = default;
    /// A null text and an address that is discarded already are ignored.
    virtual void addDiscardedIp(const QString &address) = 0;
    [[nodiscard]] virtual bool hasRow(const QString &text) const = 0;
    /// In the order in which they were discarded.
    [[nodiscard]] virtual QStringList getRowData() const = 0;
};

} // namespace quorvane

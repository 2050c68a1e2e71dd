#pragma once

#include "LocationChoice.h"

namespace quorvane {

/// The controls of the main window that the rotation reads and sets. Main thread.
class RotationControls {
public:
    virtual ~RotationControls() = default;
    [[nodiscard]] virtual const LocationChoice::Locations &locations() const = 0;
    /// The selected entry; there always is one.
    [[nodiscard]] virtual LocationChoice::Entry selectedLocation() const = 0;
    /// Selects the entry with this id, if there is one.
    virtual void selectLocation(quint64 id) = 0;
    virtual void selectRandomLocation() = 0;
    virtual void removeLocation(const QString &title) = 0;
    [[nodiscard]] virtual bool requiresUS() const = 0;
    virtual void setRequiresUS(bool on) = 0;
    /// Whether the automatic-change box is on.
    [[nodiscard]] virtual bool changesAutomatically() const = 0;
    /// The selected transport's label.
    [[nodiscard]] virtual QString transportLabel() const = 0;
};

} // namespace quorvane

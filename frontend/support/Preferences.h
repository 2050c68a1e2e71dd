#pragma once

#include "platform/PreferenceTable.h"

#include <QString>
#include <QVariant>
#include <initializer_list>
#include <utility>

namespace quorvane {

using platform::Preference;

/// The one way to read and write the preferences of platform/PreferenceTable.h. A preference is read and
/// written with the type that the table gives it.
///
/// The program's own values are stored. What the user changes in a window is an edit: the settings window
/// holds its edits until save() or revert(), and an edit elsewhere is chosen, that is saved at once together
/// with those that are held.
namespace Preferences {

using Value = std::pair<Preference, QVariant>;

// The stored value. Any thread.
[[nodiscard]] qint64 integer(Preference preference);
[[nodiscard]] bool boolean(Preference preference);
/// A null text when absent.
[[nodiscard]] QString text(Preference preference);

/// Stores the values as one change of the file. An invalid variant removes its preference. Any thread.
void store(std::initializer_list<Value> values);
/// Writes pending changes to the disk and reads those of other processes. Any thread.
void synchronize();

// The edit that is held, if there is one, else the stored value. Main thread.
[[nodiscard]] qint64 editedInteger(Preference preference);
[[nodiscard]] bool editedBoolean(Preference preference);
[[nodiscard]] QString editedText(Preference preference);

/// Holds an edit, or stores it at once while edits are not held. Main thread.
void edit(Preference preference, const QVariant &value);
/// Edits and saves. Main thread.
void choose(std::initializer_list<Value> values);
/// Stores every edit that is held, and writes the file. Main thread.
void save();
/// Drops every edit that is held. Main thread.
void revert();
/// From now on edits are held. Main thread.
void holdEdits();

/// Sets the table's start values where an integer reads 0 or a text is absent; a stored 0 is therefore
/// replaced. Call it at each start, before preferences are read. The file gets them from storeStartValues(),
/// or with any change before. Main thread.
void setStartValues();
/// The same, and saves. Main thread.
void storeStartValues();

} // namespace Preferences

} // namespace quorvane

#pragma once

#include <QVariant>

/// Shared by the property list targets: the checks on a dictionary that was read.
namespace PropertyLists {

/// Ends the program when it contains a value of an unexpected type, or one nested too deep.
void checkTypes(const QVariantMap &dictionary);

/// Ends the program when writing and reading does not return the same dictionary, except for the entries that
/// writing omits. Dictionaries beyond the reader's limits are ignored.
void checkRoundTrip(const QVariantMap &dictionary);

} // namespace PropertyLists

#pragma once

#include <QVariant>

/// What the property list targets share: the checks on a dictionary that was read.
namespace PropertyLists {

/// Ends the run when a value of a type that is not promised, or one nested too deep, is in it.
void checkTypes(const QVariantMap &dictionary);

/// Ends the run when writing and reading does not give the same dictionary again, less the entries that
/// writing leaves out. Dictionaries beyond what the reader bears are passed over.
void checkRoundTrip(const QVariantMap &dictionary);

} // namespace PropertyLists

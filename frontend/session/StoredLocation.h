#pragma once

#include <QString>

namespace quorvane {

class LocationList;
class ServerModel;

/// The user's choice of a location in the preferences. Main thread.
namespace StoredLocation {

/// Selects the stored location in the list. If the list has no such location, its selection and the
/// preferences stay.
void selectIn(LocationList &list, ServerModel &model);

/// Stores country and code of the title's group, empty texts when there is none. While the user keeps an
/// address, the location of that address is stored instead of the code.
void store(const QString &title, const ServerModel &model);

/// Stores whether the user keeps the same address, and the address in use, which is there only while the IP
/// is hidden.
void storeSameIp(bool keeps);

} // namespace StoredLocation

} // namespace quorvane

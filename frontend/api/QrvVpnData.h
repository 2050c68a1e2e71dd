#pragma once

#include <QString>
#include <QStringList>
#include <memory>

namespace quorvane {

/// One server group of the service, made from one "Server" line of an answer.
struct QrvVpnData {
    QString ipAdress;    ///< one address of the group, picked at random when the group was made
    QString cityCountry; ///< label shown to the user
    QString user;        ///< one-time VPN user name; a null text when the answer had none
    QString pass;        ///< one-time VPN password; a null text when the answer had none
    QString countryCode;
    QString codeName;                  ///< location code sent to the service
    QStringList ipAdressArray;         ///< every address, in the order of the line
    QStringList filteredIpAdressArray; ///< the usable addresses, without the discarded ones
    QString key;                       ///< text stored beside the credentials
};

/// Groups are shared by the server list and their entries in the location list.
using QrvVpnDataPointer = std::shared_ptr<QrvVpnData>;

} // namespace quorvane

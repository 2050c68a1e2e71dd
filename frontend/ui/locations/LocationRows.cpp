#include "LocationRows.h"

#include "frontend/session/LocationList.h"
#include "frontend/ui/shared/Images.h"

namespace quorvane {

LocationRows::LocationRows(LocationList &list, QObject *parent) : QIdentityProxyModel(parent) {
    setSourceModel(&list);
}

QVariant LocationRows::data(const QModelIndex &index, int role) const {
    if (role == Qt::DecorationRole && index.isValid()) {
        return Images::icon(index.data(LocationList::FlagRole).toString());
    }
    return QIdentityProxyModel::data(index, role);
}

} // namespace quorvane

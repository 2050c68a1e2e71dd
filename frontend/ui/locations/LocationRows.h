#pragma once

#include <QIdentityProxyModel>

namespace quorvane {

class LocationList;

/// The location list as the pop-up shows it: with the flags, which are looked up when a row is painted. The
/// list is not owned and must outlive this. Main thread.
class LocationRows final : public QIdentityProxyModel {
    Q_OBJECT

public:
    explicit LocationRows(LocationList &list, QObject *parent = nullptr);

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
};

} // namespace quorvane

#pragma once

#include "QrvMenuItemViewController.h"
#include "frontend/api/QrvVpnData.h"

#include <QAction>

namespace quorvane {

/// A location as an entry of a menu, which can have a row of its own (QrvMenuItemViewController). The program
/// makes none: the rows of its list are drawn from LocationList, without an object for each. The class exists
/// because its interface is fixed. Main thread.
class QrvMenuItem final : public QAction {
    Q_OBJECT

public:
    explicit QrvMenuItem(const QString &title, QObject *parent = nullptr);
    ~QrvMenuItem() override;

    /// Identifies the entry for the whole run: no two ever have the same id.
    [[nodiscard]] quint64 id() const { return m_entryId; }

    /// The entry's server group; null for pseudo-locations.
    [[nodiscard]] QrvVpnDataPointer vpnData() const { return m_data; }

    void setVpnData(const QrvVpnDataPointer &data) { m_data = data; }

    /// Stores the mark and passes it on to the item view.
    void setFull(bool mark);
    /// The item view's mark: false without an item view, whatever was set.
    [[nodiscard]] bool full() const;

    /// The mark that setFull() stored.
    [[nodiscard]] bool isMarkedFull() const { return m_fullMark; }

    void setItemView(std::unique_ptr<QrvMenuItemViewController> view);

    [[nodiscard]] QrvMenuItemViewController *itemView() const { return m_controller.get(); }

    /// Name of the flag's image; null without one.
    [[nodiscard]] QString imageName() const { return m_flag; }

    void setImageName(const QString &flag) { m_flag = flag; }

private:
    quint64 m_entryId;
    QrvVpnDataPointer m_data;
    bool m_fullMark = false;
    std::unique_ptr<QrvMenuItemViewController> m_controller;
    QString m_flag;
};

} // namespace quorvane

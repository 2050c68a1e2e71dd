#pragma once

#include "QrvVpnData.h"

#include <QByteArrayView>
#include <QSet>
#include <iterator>

namespace quorvane {

class ServerLines;

/// The server groups of one answer, sorted by their labels. A group is made when it is first used and kept
/// from then on; what a long list needs of every group (label, codes, usable addresses) is read from the
/// answer's text instead. Copies share their groups.
///
/// A list may be made on any thread. From the first use of a group on it belongs to the main thread.
class QrvVpnDataList {
public:
    class ConstIterator {
    public:
        // NOLINTBEGIN(readability-identifier-naming): the names that the standard library looks for
        using iterator_category = std::forward_iterator_tag;
        using value_type = QrvVpnDataPointer;
        using difference_type = qsizetype;
        using pointer = const QrvVpnDataPointer *;
        using reference = QrvVpnDataPointer;
        // NOLINTEND(readability-identifier-naming)

        ConstIterator() = default;

        ConstIterator(const QrvVpnDataList *list, qsizetype index) : m_list(list), m_index(index) {}

        QrvVpnDataPointer operator*() const { return m_list->at(m_index); }

        ConstIterator &operator++() {
            ++m_index;
            return *this;
        }

        ConstIterator operator++(int) { return {m_list, m_index++}; }

        bool operator==(const ConstIterator &other) const { return m_index == other.m_index; }

    private:
        const QrvVpnDataList *m_list = nullptr;
        qsizetype m_index = 0;
    };

    QrvVpnDataList() = default;
    /// Lines without "|" or with fewer than five fields are left out. Groups with equal labels keep the order
    /// of their lines.
    QrvVpnDataList(const ServerLines &lines, const QString &user, const QString &password,
                   const QString &key);

    [[nodiscard]] qsizetype size() const;

    [[nodiscard]] bool isEmpty() const { return size() == 0; }

    /// The group, never null; every call returns the same one.
    [[nodiscard]] QrvVpnDataPointer at(qsizetype index) const;

    [[nodiscard]] QrvVpnDataPointer first() const { return at(0); }

    [[nodiscard]] ConstIterator begin() const { return {this, 0}; }

    [[nodiscard]] ConstIterator end() const { return {this, size()}; }

    // Fields of a group that need not be made for them. The texts are UTF-8 and as valid as the list.
    [[nodiscard]] QByteArrayView label(qsizetype index) const;
    [[nodiscard]] QByteArrayView countryCode(qsizetype index) const;
    [[nodiscard]] QString codeName(qsizetype index) const;
    /// Whether any address is not discarded.
    [[nodiscard]] bool isUsable(qsizetype index) const;

    /// Makes every group's filtered addresses anew: all of its addresses without these.
    void setDiscarded(const QSet<QString> &addresses);

private:
    struct Groups;

    std::shared_ptr<Groups> m_groups;
};

} // namespace quorvane

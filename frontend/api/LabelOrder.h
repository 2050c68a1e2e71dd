#pragma once

#include <QByteArrayView>
#include <functional>
#include <vector>

namespace quorvane {

/// The numbers 0 to count - 1, sorted by their labels as texts of UTF-16 units are compared; numbers with
/// equal labels stay in their order. Labels are valid UTF-8. Any thread.
[[nodiscard]] std::vector<quint32> orderOfLabels(quint32 count,
                                                 const std::function<QByteArrayView(quint32)> &labelOf);

} // namespace quorvane

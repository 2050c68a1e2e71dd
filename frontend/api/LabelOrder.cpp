#include "LabelOrder.h"

#include <QtEndian>
#include <algorithm>
#include <cstring>
#include <tuple>

namespace quorvane {

namespace {

// Labels of one list begin alike ("Country City 1"), so that comparing two of them reads far into memory that
// is not cached. Therefore eight bytes of every label are sorted at a time, in one block of memory, and only
// labels that are equal so far are sorted by their next eight.
constexpr qsizetype wordSize = 8;

struct Piece {
    quint64 word;   // the bytes, the first one the most significant
    quint32 used;   // how many of them belong to the label; the rest is 0
    quint32 number; // of the label

    [[nodiscard]] auto key() const { return std::tie(word, used, number); }

    [[nodiscard]] bool begins(const Piece &other) const {
        return used == wordSize && word == other.word && used == other.used;
    }
};

/// In UTF-16 the characters of four bytes in UTF-8 are less than those that begin with 0xEE and 0xEF.
quint8 inOrderOfUnits(quint8 byte) {
    return byte == 0xEE || byte == 0xEF ? static_cast<quint8>(byte + 0x10) : byte;
}

Piece pieceOf(QByteArrayView label, qsizetype depth, quint32 number) {
    const qsizetype used = std::min(label.size() - depth, wordSize);
    quint8 bytes[wordSize] = {};
    std::memcpy(bytes, label.data() + depth, static_cast<std::size_t>(used));
    std::transform(std::begin(bytes), std::end(bytes), std::begin(bytes), inOrderOfUnits);
    return {qFromBigEndian<quint64>(bytes), static_cast<quint32>(used), number};
}

/// Labels that are equal up to a depth.
struct Run {
    std::size_t begin;
    std::size_t end;
    qsizetype depth;
};

} // namespace

std::vector<quint32> orderOfLabels(quint32 count, const std::function<QByteArrayView(quint32)> &labelOf) {
    std::vector<Piece> pieces(count);
    for (quint32 number = 0; number < count; ++number) {
        pieces[number].number = number;
    }
    const auto isLess = [](const Piece &a, const Piece &b) {
        return a.key() < b.key();
    };
    std::vector<Run> runs{{0, count, 0}};
    while (!runs.empty()) {
        const Run run = runs.back();
        runs.pop_back();
        const auto begin = pieces.begin() + static_cast<std::ptrdiff_t>(run.begin);
        const auto end = pieces.begin() + static_cast<std::ptrdiff_t>(run.end);
        for (auto piece = begin; piece != end; ++piece) {
            *piece = pieceOf(labelOf(piece->number), run.depth, piece->number);
        }
        if (!std::is_sorted(begin, end, isLess)) {
            std::sort(begin, end, isLess);
        }
        for (std::size_t first = run.begin; first < run.end;) {
            std::size_t next = first + 1;
            while (next < run.end && pieces[first].begins(pieces[next])) {
                ++next;
            }
            if (next - first > 1) {
                runs.push_back({first, next, run.depth + wordSize});
            }
            first = next;
        }
    }
    std::vector<quint32> order(count);
    std::transform(pieces.begin(), pieces.end(), order.begin(),
                   [](const Piece &piece) { return piece.number; });
    return order;
}

} // namespace quorvane

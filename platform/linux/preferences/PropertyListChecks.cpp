#include "PropertyListChecks.h"

#include <QStringDecoder>

#include <algorithm>
#include <vector>

namespace quorvane::platform::PropertyList {

namespace {

constexpr qsizetype maximumValues = 200'000;
// The parser and its clean-up are recursive, so this limits their stack too.
constexpr qsizetype maximumXmlContainers = 4096;
constexpr qsizetype magicSize = 8;
constexpr qsizetype trailerSize = 32;

bool isUtf8(const QByteArray &bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return !decoder.hasError() && !text.isNull();
}

/// Walks over the objects of a binary property list and counts them as often as they are used.
class BinaryWalk {
public:
    explicit BinaryWalk(const QByteArray &bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool run() {
        if (!readTrailer()) {
            return false;
        }
        return visit(m_topObject, 0);
    }

private:
    /// Big-endian number; the caller has checked the bounds.
    [[nodiscard]] quint64 number(qsizetype at, int size) const {
        quint64 value = 0;
        for (int i = 0; i < size; ++i) {
            value = (value << 8U) | static_cast<quint8>(m_bytes[at + i]);
        }
        return value;
    }

    [[nodiscard]] bool readTrailer() {
        if (m_bytes.size() < magicSize + 1 + trailerSize) {
            return false;
        }
        const qsizetype trailer = m_bytes.size() - trailerSize;
        m_offsetSize = static_cast<quint8>(m_bytes[trailer + 6]);
        m_referenceSize = static_cast<quint8>(m_bytes[trailer + 7]);
        m_objects = number(trailer + 8, 8);
        m_topObject = number(trailer + 16, 8);
        const quint64 table = number(trailer + 24, 8);
        const auto end = static_cast<quint64>(trailer);
        if (m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1 || m_referenceSize > 8) {
            return false;
        }
        if (m_objects == 0 || m_objects > static_cast<quint64>(maximumValues) || m_topObject >= m_objects) {
            return false;
        }
        if (table < static_cast<quint64>(magicSize) || table >= end ||
            m_objects * static_cast<quint64>(m_offsetSize) > end - table) {
            return false;
        }
        m_offsetTable = static_cast<qsizetype>(table);
        return true;
    }

    /// Reads the count of an object's marker; `at` is moved to the first content byte.
    [[nodiscard]] bool readCount(qsizetype &at, quint64 &count) const {
        count = static_cast<quint8>(m_bytes[at]) & 0x0FU;
        ++at;
        if (count != 0x0FU) {
            return true;
        }
        if (at >= m_offsetTable || (static_cast<quint8>(m_bytes[at]) & 0xF0U) != 0x10U) {
            return false;
        }
        const int size = 1 << (static_cast<quint8>(m_bytes[at]) & 0x0FU);
        ++at;
        if (size > 8 || at + size > m_offsetTable) {
            return false;
        }
        count = number(at, size);
        at += size;
        return true;
    }

    [[nodiscard]] bool fits(qsizetype at, quint64 count, quint64 unit) const {
        const auto room = static_cast<quint64>(m_offsetTable - at);
        return count <= room && count * unit <= room;
    }

    [[nodiscard]] bool visitChildren(qsizetype at, quint64 references, int depth) {
        for (quint64 i = 0; i < references; ++i) {
            const qsizetype place = at + static_cast<qsizetype>(i) * m_referenceSize;
            if (!visit(number(place, m_referenceSize), depth + 1)) {
                return false;
            }
        }
        return true;
    }

    [[nodiscard]] bool visit(quint64 object, int depth) {
        // A shared object is counted each time it is met, which limits both repetition and loops.
        if (object >= m_objects || depth > maximumDepth || ++m_visited > maximumValues) {
            return false;
        }
        const quint64 offset =
            number(m_offsetTable + static_cast<qsizetype>(object) * m_offsetSize, m_offsetSize);
        if (offset < static_cast<quint64>(magicSize) || offset >= static_cast<quint64>(m_offsetTable)) {
            return false;
        }
        auto at = static_cast<qsizetype>(offset);
        const unsigned marker = static_cast<quint8>(m_bytes[at]);
        const quint64 power = 1ULL << (marker & 0x0FU);
        quint64 count = 0;
        switch (marker >> 4U) {
        case 0x0: // only false and true of this group
            return marker == 0x08U || marker == 0x09U;
        case 0x1: // integer
            return power <= 16 && fits(at + 1, power, 1);
        case 0x2: // real
            return (power == 4 || power == 8) && fits(at + 1, power, 1);
        case 0x3: // date
            return marker == 0x33U && fits(at + 1, power, 1);
        case 0x4: // data
        case 0x5: // ASCII text
            return readCount(at, count) && fits(at, count, 1) && addContent(count);
        case 0x6: // UTF-16 text
            return readCount(at, count) && fits(at, count, 2) && addContent(count * 2);
        case 0xA: // array
            return readCount(at, count) && fits(at, count, static_cast<quint64>(m_referenceSize)) &&
                   visitChildren(at, count, depth);
        case 0xD: // dictionary: the keys, then the values
            return readCount(at, count) && fits(at, count, 2 * static_cast<quint64>(m_referenceSize)) &&
                   keysAreTexts(at, count) && visitChildren(at, count * 2, depth);
        default:
            return false;
        }
    }

    [[nodiscard]] bool keysAreTexts(qsizetype at, quint64 count) const {
        for (quint64 i = 0; i < count; ++i) {
            const quint64 object = number(at + static_cast<qsizetype>(i) * m_referenceSize, m_referenceSize);
            if (object >= m_objects) {
                return false;
            }
            const quint64 offset =
                number(m_offsetTable + static_cast<qsizetype>(object) * m_offsetSize, m_offsetSize);
            if (offset >= static_cast<quint64>(m_offsetTable)) {
                return false;
            }
            const unsigned kind = static_cast<quint8>(m_bytes[static_cast<qsizetype>(offset)]) >> 4U;
            if (kind != 0x5U && kind != 0x6U) {
                return false;
            }
            auto begin = static_cast<qsizetype>(offset);
            quint64 length = 0;
            if (!readCount(begin, length) || !fits(begin, length, kind == 0x6U ? 2 : 1)) {
                return false;
            }
            for (quint64 k = 0; k < length; ++k) {
                const qsizetype unit = begin + static_cast<qsizetype>(kind == 0x6U ? 2 * k : k);
                if (m_bytes[unit] == 0 && (kind == 0x5U || m_bytes[unit + 1] == 0)) {
                    return false;
                }
            }
        }
        return true;
    }

    /// Shared long values are counted each time they are met, too.
    [[nodiscard]] bool addContent(quint64 size) {
        m_contentBytes += size;
        return m_contentBytes <= static_cast<quint64>(maximumSize);
    }

    const QByteArray &m_bytes;
    qsizetype m_offsetTable = 0;
    int m_offsetSize = 0;
    int m_referenceSize = 0;
    quint64 m_objects = 0;
    quint64 m_topObject = 0;
    qsizetype m_visited = 0;
    quint64 m_contentBytes = 0;
};

} // namespace

bool isBinary(const QByteArray &bytes) {
    return bytes.startsWith("bplist");
}

bool isAcceptableXml(const QByteArray &bytes) {
    if (bytes.isEmpty() || bytes.size() > maximumSize || bytes.contains('\0')) {
        return false;
    }
    if (bytes.contains("<!ENTITY") || bytes.count('<') > maximumValues * 2) {
        return false;
    }
    if (bytes.count("<dict") + bytes.count("<array") > maximumXmlContainers) {
        return false;
    }
    return isUtf8(bytes);
}

bool isAcceptableBinary(const QByteArray &bytes) {
    return bytes.size() <= maximumSize && bytes.startsWith("bplist00") && BinaryWalk(bytes).run();
}

} // namespace quorvane::platform::PropertyList

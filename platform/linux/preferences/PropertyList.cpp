#include "platform/PropertyList.h"

#include "PropertyListChecks.h"
#include "platform/Files.h"
#include "platform/linux/files/AtomicFile.h"

#include <QDateTime>
#include <QStringDecoder>
#include <QTimeZone>

#include <cstdint>
#include <cstdlib>
#include <locale.h>
#include <memory>
#include <plist/plist.h>

namespace quorvane::platform::PropertyList {

namespace {

// A data value that begins with this is a text in UTF-16LE units that XML cannot contain.
constexpr QByteArrayView textMarker = "\xFF\xFE\x51\x53";
// A data value that begins with this is raw bytes that begin like one of these two markers.
constexpr QByteArrayView bytesMarker = "\xFF\xFE\x51\x44";
// Dates are counted from the first moment of 2001.
constexpr qint64 epochSeconds = 978307200;

struct NodeDeleter {
    void operator()(void *node) const { plist_free(node); }
};

using Node = std::unique_ptr<void, NodeDeleter>;

struct MemoryDeleter {
    void operator()(void *memory) const { std::free(memory); }
};

template <typename T>
using Memory = std::unique_ptr<T, MemoryDeleter>;

/// The parser reads numbers in the thread's locale; with a decimal comma it would truncate every real.
class PlainNumbers {
public:
    PlainNumbers() : m_plain(::newlocale(LC_ALL_MASK, "C", nullptr)), m_before(::uselocale(m_plain)) {}

    ~PlainNumbers() {
        ::uselocale(m_before);
        if (m_plain != nullptr) {
            ::freelocale(m_plain);
        }
    }

    PlainNumbers(const PlainNumbers &) = delete;
    PlainNumbers &operator=(const PlainNumbers &) = delete;

private:
    locale_t m_plain;
    locale_t m_before;
};

QDateTime epoch() {
    return QDateTime::fromSecsSinceEpoch(epochSeconds, Qt::UTC);
}

/// Whether an XML text can contain it unchanged. It cannot contain a carriage return: readers turn it into a
/// line feed.
bool isValidInXml(const QString &text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        const bool control = unit < u' ' && unit != u'\t' && unit != u'\n';
        if (control || unit.isSurrogate() || unit == QChar(0xFFFE) || unit == QChar(0xFFFF)) {
            return false;
        }
    }
    return true;
}

QByteArray markedText(const QString &text) {
    QByteArray bytes = textMarker.toByteArray();
    for (const QChar unit : text) {
        bytes += static_cast<char>(unit.unicode() & 0xFFU);
        bytes += static_cast<char>(unit.unicode() >> 8U);
    }
    return bytes;
}

QVariant fromBytes(const QByteArray &bytes) {
    if (bytes.startsWith(bytesMarker)) {
        return bytes.mid(bytesMarker.size());
    }
    if (!bytes.startsWith(textMarker) || bytes.size() % 2 != 0) {
        return bytes;
    }
    QString text(QLatin1String(""));
    for (qsizetype i = textMarker.size(); i < bytes.size(); i += 2) {
        const auto low = static_cast<quint8>(bytes[i]);
        const auto high = static_cast<quint8>(bytes[i + 1]);
        text += QChar(static_cast<ushort>(low | (high << 8)));
    }
    return text;
}

Node dataNode(const QByteArray &bytes) {
    return Node(plist_new_data(bytes.constData(), static_cast<quint64>(bytes.size())));
}

Node textNode(const QString &text) {
    if (!isValidInXml(text)) {
        return dataNode(markedText(text));
    }
    return Node(plist_new_string(text.toUtf8().constData()));
}

Node bytesNode(const QByteArray &bytes) {
    const bool ambiguous = bytes.startsWith(textMarker) || bytes.startsWith(bytesMarker);
    return dataNode(ambiguous ? bytesMarker.toByteArray() + bytes : bytes);
}

Node dateNode(const QDateTime &date) {
    const qint64 seconds = date.toSecsSinceEpoch() - epochSeconds;
    if (seconds != static_cast<qint32>(seconds)) {
        return nullptr;
    }
    return Node(plist_new_date(static_cast<qint32>(seconds), 0));
}

Node toNode(const QVariant &value, int depth);

Node listNode(const QVariantList &list, int depth) {
    Node node(plist_new_array());
    for (const QVariant &entry : list) {
        if (Node child = toNode(entry, depth + 1)) {
            plist_array_append_item(node.get(), child.release());
        }
    }
    return node;
}

Node mapNode(const QVariantMap &map, int depth) {
    Node node(plist_new_dict());
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        if (!isValidInXml(entry.key())) {
            continue;
        }
        if (Node child = toNode(*entry, depth + 1)) {
            plist_dict_set_item(node.get(), entry.key().toUtf8().constData(), child.release());
        }
    }
    return node;
}

/// Null for a value of a type that property lists do not have.
Node toNode(const QVariant &value, int depth) {
    if (depth > maximumDepth) {
        return nullptr;
    }
    switch (value.typeId()) {
    case QMetaType::QVariantMap:
        return mapNode(value.toMap(), depth);
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listNode(value.toList(), depth);
    case QMetaType::QString:
        return textNode(value.toString());
    case QMetaType::QByteArray:
        return bytesNode(value.toByteArray());
    case QMetaType::Bool:
        return Node(plist_new_bool(value.toBool() ? 1 : 0));
    case QMetaType::Float:
    case QMetaType::Double:
        return Node(plist_new_real(value.toDouble()));
    case QMetaType::QDateTime:
        return dateNode(value.toDateTime());
    default:
        if (!value.canConvert<qlonglong>() || value.metaType().flags().testFlag(QMetaType::IsPointer)) {
            return nullptr;
        }
        return Node(plist_new_uint(static_cast<quint64>(value.toLongLong())));
    }
}

std::optional<QVariant> fromNode(plist_t node, int depth);

/// Keeps a byte order mark at the beginning of the text. Never null.
QString fromUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    const QString text = decoder(bytes);
    return text.isNull() ? QStringLiteral("") : text;
}

std::optional<QVariant> fromText(plist_t node) {
    // The function that copies a text aborts on one that contains U+0000.
    std::uint64_t length = 0;
    const char *text = plist_get_string_ptr(node, &length);
    if (text == nullptr) {
        return std::nullopt;
    }
    return fromUtf8(QByteArrayView(text, static_cast<qsizetype>(length)));
}

std::optional<QVariant> fromData(plist_t node) {
    std::uint64_t length = 0;
    const char *bytes = plist_get_data_ptr(node, &length);
    if (bytes == nullptr) {
        return length == 0 ? std::optional<QVariant>(QByteArray("")) : std::nullopt;
    }
    return fromBytes(QByteArray(bytes, static_cast<qsizetype>(length)));
}

std::optional<QVariant> fromScalar(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        quint8 value = 0;
        plist_get_bool_val(node, &value);
        return value != 0;
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return QVariant::fromValue(static_cast<qint64>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_DATE: {
        qint32 seconds = 0;
        qint32 microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        return epoch().addSecs(seconds);
    }
    default:
        return std::nullopt;
    }
}

std::optional<QVariant> fromArray(plist_t node, int depth) {
    QVariantList list;
    const quint32 size = plist_array_get_size(node);
    plist_array_iter rawIterator = nullptr;
    plist_array_new_iter(node, &rawIterator);
    const Memory<void> iterator(rawIterator);
    for (quint32 i = 0; i < size; ++i) {
        plist_t child = nullptr;
        plist_array_next_item(node, rawIterator, &child);
        const auto value = fromNode(child, depth + 1);
        if (!value) {
            return std::nullopt;
        }
        list.append(*value);
    }
    return list;
}

std::optional<QVariantMap> fromDictionary(plist_t node, int depth) {
    QVariantMap map;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(node, &rawIterator);
    const Memory<void> iterator(rawIterator);
    for (;;) {
        char *rawKey = nullptr;
        plist_t child = nullptr;
        plist_dict_next_item(node, rawIterator, &rawKey, &child);
        const Memory<char> key(rawKey);
        if (rawKey == nullptr || child == nullptr) {
            return map;
        }
        const auto value = fromNode(child, depth + 1);
        if (!value) {
            return std::nullopt;
        }
        map.insert(fromUtf8(rawKey), *value);
    }
}

std::optional<QVariant> fromNode(plist_t node, int depth) {
    if (node == nullptr || depth > maximumDepth) {
        return std::nullopt;
    }
    switch (plist_get_node_type(node)) {
    case PLIST_DICT: {
        const auto map = fromDictionary(node, depth);
        return map ? std::optional<QVariant>(*map) : std::nullopt;
    }
    case PLIST_ARRAY:
        return fromArray(node, depth);
    case PLIST_STRING:
        return fromText(node);
    case PLIST_DATA:
        return fromData(node);
    default:
        return fromScalar(node);
    }
}

} // namespace

std::optional<QVariantMap> parse(const QByteArray &bytes) {
    const bool binary = isBinary(bytes);
    if (binary ? !isAcceptableBinary(bytes) : !isAcceptableXml(bytes)) {
        return std::nullopt;
    }
    const PlainNumbers plainNumbers;
    plist_t raw = nullptr;
    const auto size = static_cast<quint32>(bytes.size());
    if (binary) {
        plist_from_bin(bytes.constData(), size, &raw);
    } else {
        plist_from_xml(bytes.constData(), size, &raw);
    }
    const Node root(raw);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) {
        return std::nullopt;
    }
    return fromDictionary(root.get(), 0);
}

QByteArray write(const QVariantMap &dictionary) {
    const PlainNumbers plainNumbers;
    const Node root = mapNode(dictionary, 0);
    char *raw = nullptr;
    quint32 size = 0;
    plist_to_xml(root.get(), &raw, &size);
    const Memory<char> text(raw);
    return {raw, static_cast<qsizetype>(size)};
}

std::optional<QVariantMap> readFile(const QString &path) {
    QByteArray bytes;
    if (readPlainFile(path, maximumSize, bytes) != 0) {
        return std::nullopt;
    }
    return parse(bytes);
}

bool writeFile(const QString &path, const QVariantMap &dictionary) {
    return replaceFile(path, write(dictionary)) == 0;
}

} // namespace quorvane::platform::PropertyList

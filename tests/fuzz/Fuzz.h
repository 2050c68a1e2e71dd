#pragma once

#include <QString>

#include <cstdio>
#include <cstdlib>
#include <string_view>

/// Defined by every target: checks one input of the fuzzer. The bytes are not valid after the call.
void fuzzOne(std::string_view bytes);

/// Ends the program when a property does not hold, which makes the input a finding.
inline void must(bool holds, const char *property) {
    if (!holds) {
        std::fprintf(stderr, "PROPERTY BROKEN: %s\n", property);
        std::abort();
    }
}

/// The bytes decoded as UTF-8, like all input from the network. Never null.
inline QString textOf(std::string_view bytes) {
    const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return text.isNull() ? QStringLiteral("") : text;
}

/// The bytes read in pairs as UTF-16 units, lone surrogates included. Never null.
inline QString unitsOf(std::string_view bytes) {
    QString text = QStringLiteral("");
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        text += QChar(static_cast<char16_t>(low | (high << 8)));
    }
    return text;
}

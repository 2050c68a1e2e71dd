#pragma once

#include <string>
#include <string_view>
#include <vector>

struct GeneratedConfiguration {
    std::string text;
    std::string keyBlocks; ///< the blocks with keys and certificates as they are in `text`
};

/// A configuration that the guard allows, made of the fuzzer's bytes by the grammar of the allow list:
/// directives, values within their bounds, blocks, connection blocks, in odd quotes and spacing, up to the
/// longest line and the largest configuration.
[[nodiscard]] GeneratedConfiguration generateConfiguration(std::string_view bytes);

/// The directives that generateConfiguration() may use.
[[nodiscard]] std::vector<std::string_view> generatedNames();

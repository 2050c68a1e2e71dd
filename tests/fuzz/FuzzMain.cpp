#include "Fuzz.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    // An empty input may be a null pointer; the targets receive an empty text instead.
    fuzzOne(size == 0 ? std::string_view("") : std::string_view(reinterpret_cast<const char *>(data), size));
    return 0;
}

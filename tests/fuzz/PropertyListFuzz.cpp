#include "Fuzz.h"
#include "PropertyLists.h"
#include "platform/PropertyList.h"

using namespace quorvane;

void fuzzOne(std::string_view bytes) {
    const QByteArray input(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const auto dictionary = platform::PropertyList::parse(input);
    if (dictionary) {
        PropertyLists::checkTypes(*dictionary);
        PropertyLists::checkRoundTrip(*dictionary);
    }
}

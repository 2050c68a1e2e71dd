#include "Fuzz.h"
#include "core/Target.h"
#include "frontend/api/RequestUrls.h"

#include <algorithm>
#include <cstring>

using namespace quorvane;

namespace {

bool isPlain(char byte) {
    return byte > ' ' && byte < '\x7f' && std::strchr("+\"<>\\^`{|}#[]", byte) == nullptr;
}

void checkEscaped(const QString &text) {
    const auto result = RequestUrls::escaped(text);
    must(result.has_value() == text.isValidUtf16(), "every valid text can be escaped, no other can");
    if (!result) {
        return;
    }
    must(std::all_of(result->begin(), result->end(), isPlain),
         "the result is plain ASCII without plus signs, blanks and delimiters");
    must(QByteArray::fromPercentEncoding(*result) == text.toUtf8(), "the escapes decode to the text");
    // The service reads what the client writes.
    const std::string wire = result->toStdString();
    const auto decoded = quorvane::service::percentDecoded(wire);
    must(decoded && *decoded == text.toUtf8().toStdString(), "the service decodes the same text");
    must(quorvane::service::Target::parse('/' + wire).has_value(), "the service accepts it in a target");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    checkEscaped(textOf(bytes));
    checkEscaped(unitsOf(bytes));
    const QString text = textOf(bytes);
    checkEscaped(RequestUrls::configuration(QStringLiteral("api.test"), text, text, text, text, text));
    checkEscaped(RequestUrls::parameters(
        RequestUrls::base(QStringLiteral("api.test"), QStringLiteral("1.0"), QStringLiteral("id")), text));
}

#include "Fuzz.h"
#include "platform/linux/network/HttpAnswer.h"

using namespace quorvane;

namespace {

using platform::HttpAnswer;

constexpr qint64 largestHead = 4096;

struct Read {
    HttpAnswer::State state = HttpAnswer::State::Head;
    QByteArray body;
};

Read read(const QByteArray &bytes, qsizetype pieces) {
    HttpAnswer answer(largestHead);
    Read result;
    for (qsizetype at = 0; at < bytes.size(); at += pieces) {
        result.body += answer.take(bytes.mid(at, pieces));
    }
    answer.takeEnd();
    result.state = answer.state();
    must(result.state != HttpAnswer::State::Head && result.state != HttpAnswer::State::Body,
         "the end of the connection decides");
    return result;
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QByteArray all(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const Read whole = read(all, std::max<qsizetype>(all.size(), 1));
    must(whole.body.size() <= all.size(), "a body is no longer than what came");
    for (const qsizetype pieces : {1, 5}) {
        const Read other = read(all, pieces);
        must(other.state == whole.state, "the pieces make no difference to the verdict");
        must(other.body == whole.body || whole.state != HttpAnswer::State::Complete,
             "the pieces make no difference to the body");
    }
}

#include "StrictUrl.h"

#include <QString>

#include <algorithm>

namespace quorvane::platform {

namespace {

/// Whether a segment begins with a dot: Qt removes such segments when it writes the request, not only "." and
/// "..".
bool hasDotSegment(const QString &path) {
    return path.contains(QStringLiteral("/."));
}

} // namespace

std::optional<QUrl> strictUrl(const QByteArray &text) {
    // The parser treats '#' as the start of a fragment, which is never sent, and silently corrects other
    // characters.
    const bool plain = std::all_of(text.begin(), text.end(),
                                   [](char byte) { return byte > ' ' && byte < '\x7f' && byte != '#'; });
    if (!plain) {
        return std::nullopt;
    }
    const QUrl url = QUrl::fromEncoded(text, QUrl::StrictMode);
    const QString scheme = url.scheme();
    const bool web = scheme == QStringLiteral("http") || scheme == QStringLiteral("https");
    if (!url.isValid() || !web || url.host().isEmpty() || !url.userInfo().isEmpty() ||
        url.toEncoded() != text || hasDotSegment(url.path(QUrl::FullyEncoded))) {
        return std::nullopt;
    }
    return url;
}

} // namespace quorvane::platform

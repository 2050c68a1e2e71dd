#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>

class QObject;

namespace quorvane::platform {

/// Why a download failed.
struct UrlError {
    enum class Kind { NoHost, Refused, TimedOut, Tls, TooLarge, Cancelled, File, Other };
    Kind kind = Kind::Other;
    /// For logs and messages.
    QString description;
};

/// Fetches URLs over HTTP(S) with GET.
///
/// The URL text is sent byte for byte; a text that is not already a valid URL (blanks, '#', non-ASCII
/// characters, broken escapes) is refused as a whole. An HTTP error status with a body is a finished
/// download. Limits: 60 s of silence, 60 s in all, 16 MiB for a body. Redirects never lead from https to
/// another scheme. No cookies, no cache on disk, no compression.
class UrlLoader {
public:
    /// Returns the path of the file; called when the first byte of the answer is due. Called once more when
    /// the complete file cannot get that name, as when another user's file has it; then it returns another
    /// path, or the same when there is none.
    using Destination = std::function<QString()>;
    using Finished = std::function<void()>;
    using Failed = std::function<void(const UrlError &)>;

    virtual ~UrlLoader() = default;

    /// Starts a download into a file: the body is written privately (mode 600) beside the destination and
    /// moved to its name when complete, so that a link planted there is replaced, not followed. Exactly one
    /// of the callbacks runs later, on the caller's thread, unless the context is destroyed first. False when
    /// the URL is unusable; then no callback runs.
    virtual bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                          Failed failed) = 0;
    /// Fetches the body and waits for it. Must not run on the main thread. Absent on any failure and when the
    /// URL is unusable.
    [[nodiscard]] virtual std::optional<QByteArray> fetch(const QByteArray &url) = 0;
};

} // namespace quorvane::platform

#include "QtUrlLoader.h"

#include "UrlTransfer.h"
#include "platform/StrictUrl.h"
#include "platform/linux/files/AtomicFile.h"

#include <QEventLoop>
#include <QSslCertificate>

namespace quorvane::platform {

namespace {

UrlError fileError(int number) {
    return {UrlError::Kind::File, qt_error_string(number)};
}

/// The file that a download goes into; it is made at the first byte.
struct DownloadFile {
    UrlLoader::Destination destination;
    std::optional<PendingFile> file;

    [[nodiscard]] std::optional<UrlError> take(const QByteArray &piece) {
        int outcome = file ? 0 : file.emplace().open(destination());
        if (outcome == 0) {
            outcome = file->write(piece);
        }
        return outcome == 0 ? std::nullopt : std::optional(fileError(outcome));
    }
};

} // namespace

QtUrlLoader::QtUrlLoader(const QString &clientVersion, const QString &authorities, const UrlLimits &bounds)
    : m_version(clientVersion), m_authorityFile(authorities), m_limits(bounds) {}

QtUrlLoader::~QtUrlLoader() = default;

bool QtUrlLoader::download(const QByteArray &url, QObject *context, Destination destination,
                           Finished finished, Failed failed) {
    const auto request = requestFor(url);
    if (!request) {
        return false;
    }
    auto target = std::make_shared<DownloadFile>();
    target->destination = std::move(destination);
    const auto ended = [target, finished = std::move(finished),
                        failed = std::move(failed)](const std::optional<UrlError> &error) {
        const int outcome = error ? 0 : target->file->commit(false);
        // What did not get its name is gone before anybody is told.
        target->file.reset();
        if (error) {
            failed(*error);
        } else if (outcome != 0) {
            failed(fileError(outcome));
        } else {
            finished();
        }
    };
    // The transfer belongs to the context and goes with it.
    auto *transfer = new UrlTransfer(
        *request, m_limits, context, [target](const QByteArray &piece) { return target->take(piece); },
        ended);
    QObject::connect(&m_lifetime, &QObject::destroyed, transfer, &UrlTransfer::cancel);
    return true;
}

std::optional<QByteArray> QtUrlLoader::fetch(const QByteArray &url) {
    const auto request = requestFor(url);
    if (!request) {
        return std::nullopt;
    }
    // First of all: it gives a thread that Qt did not start what timers and sockets need.
    QEventLoop loop;
    QByteArray body("");
    // Growing by copying would take three times the largest body; room that is not used costs nothing.
    body.reserve(m_limits.largestBody);
    std::optional<UrlError> failure;
    bool over = false;
    QObject context;
    new UrlTransfer(
        *request, m_limits, &context,
        [&body](const QByteArray &piece) {
            body += piece;
            return std::optional<UrlError>();
        },
        [&](const std::optional<UrlError> &error) {
            failure = error;
            over = true;
            loop.quit();
        });
    if (!over) {
        loop.exec();
    }
    return failure || !over ? std::nullopt : std::optional(body);
}

std::optional<UrlRequest> QtUrlLoader::requestFor(const QByteArray &url) {
    const auto strict = strictUrl(url);
    if (!strict) {
        return std::nullopt;
    }
    std::call_once(m_tlsIsSet, [this] {
        m_tls = QSslConfiguration::defaultConfiguration();
        if (!m_authorityFile.isEmpty()) {
            m_tls->addCaCertificates(m_authorityFile);
        }
    });
    return UrlRequest{*strict, "Quorvane/" + m_version.toUtf8(), *m_tls};
}

} // namespace quorvane::platform

#include "CurlUrlLoader.h"

#include "CurlLibrary.h"
#include "CurlTransfer.h"
#include "platform/StrictUrl.h"
#include "platform/linux/files/AtomicFile.h"

#include <QEventLoop>
#include <QFile>
#include <QPointer>

#include <utility>

namespace quorvane::platform {

namespace {

UrlError fileError(int number) {
    return {UrlError::Kind::File, qt_error_string(number)};
}

/// The file that a download goes into; it is made at the first byte.
struct DownloadFile {
    UrlLoader::Destination destination;
    QString path;
    std::optional<PendingFile> file;

    [[nodiscard]] std::optional<UrlError> write(const QByteArray &piece) {
        int outcome = 0;
        if (!file) {
            path = destination();
            outcome = file.emplace().open(path);
        }
        if (outcome == 0) {
            outcome = file->write(piece);
        }
        return outcome == 0 ? std::nullopt : std::optional(fileError(outcome));
    }

    /// Gives the complete file its name, or another one. Returns 0 or an errno value.
    [[nodiscard]] int commit() {
        const int refusal = file->commit(false);
        if (refusal == 0) {
            return 0;
        }
        const QString other = destination();
        if (other == path) {
            return refusal;
        }
        PendingFile second;
        int outcome = second.open(other);
        if (outcome == 0) {
            outcome = second.copy(*file);
        }
        return outcome == 0 ? second.commit(false) : outcome;
    }
};

} // namespace

CurlUrlLoader::CurlUrlLoader(const QString &version, const QString &authorityFile, const UrlLimits &limits,
                             const QString &authorityFolder, AddressesOf addressesOf, Library library)
    : m_version(version), m_authorityFile(authorityFile), m_authorityFolder(authorityFolder),
      m_limits(limits), m_addressesOf(std::move(addressesOf)),
      m_library(library ? std::move(library) : &CurlLibrary::shared) {}

CurlUrlLoader::~CurlUrlLoader() {
    if (m_loading.joinable()) {
        m_loading.join();
    }
}

void CurlUrlLoader::startWhenLoaded(std::function<void()> start) {
    if (m_isLoaded) {
        start();
        return;
    }
    m_waiting.push_back(std::move(start));
    if (m_loading.joinable()) {
        return;
    }
    m_loading = std::thread([this] {
        m_library();
        QMetaObject::invokeMethod(
            &m_lifetime,
            [this] {
                m_isLoaded = true;
                for (const auto &waiting : std::exchange(m_waiting, {})) {
                    waiting();
                }
            },
            Qt::QueuedConnection);
    });
}

bool CurlUrlLoader::download(const QByteArray &url, QObject *context, Destination destination,
                             Finished finished, Failed failed) {
    const auto request = requestFor(url);
    if (!request) {
        return false;
    }
    auto target = std::make_shared<DownloadFile>();
    target->destination = std::move(destination);
    const auto ended = [target, alive = QPointer(context), finished = std::move(finished),
                        failed = std::move(failed)](const std::optional<UrlError> &error) {
        const int outcome = error ? 0 : target->commit();
        // A file without its name is removed before the report.
        target->file.reset();
        if (!alive) {
            return; // the function that chooses the path has destroyed it
        }
        if (error) {
            failed(*error);
        } else if (outcome != 0) {
            failed(fileError(outcome));
        } else {
            finished();
        }
    };
    startWhenLoaded([this, request = *request, parent = QPointer(context), target, ended] {
        if (!parent) {
            return;
        }
        // The transfer belongs to the context and goes with it.
        auto *transfer = new CurlTransfer(
            m_library(), request, m_limits, parent,
            [target](const QByteArray &piece) { return target->write(piece); }, ended);
        QObject::connect(&m_lifetime, &QObject::destroyed, transfer, &CurlTransfer::cancel);
    });
    return true;
}

std::optional<QByteArray> CurlUrlLoader::fetch(const QByteArray &url) {
    const auto request = requestFor(url);
    if (!request) {
        return std::nullopt;
    }
    // First of all: it gives a thread that Qt did not start what timers and sockets need.
    QEventLoop loop;
    QByteArray body("");
    // Growing by copying would need three times the largest body; room that is not used costs nothing.
    body.reserve(m_limits.largestBody);
    std::optional<UrlError> failure;
    bool hasEnded = false;
    QObject context;
    new CurlTransfer(
        m_library(), *request, m_limits, &context,
        [&body](const QByteArray &piece) {
            body += piece;
            return std::optional<UrlError>();
        },
        [&](const std::optional<UrlError> &error) {
            failure = error;
            hasEnded = true;
            loop.quit();
        });
    loop.exec();
    return failure || !hasEnded ? std::nullopt : std::optional(body);
}

std::optional<UrlRequest> CurlUrlLoader::requestFor(const QByteArray &url) const {
    const auto strict = strictUrl(url);
    if (!strict) {
        return std::nullopt;
    }
    return UrlRequest{*strict, "Quorvane/" + m_version.toUtf8(), QFile::encodeName(m_authorityFolder),
                      QFile::encodeName(m_authorityFile),
                      m_addressesOf ? m_addressesOf(strict->host().toLatin1()) : QByteArrayList()};
}

} // namespace quorvane::platform

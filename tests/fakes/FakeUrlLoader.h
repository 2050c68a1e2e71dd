#pragma once

#include "platform/StrictUrl.h"
#include "platform/UrlLoader.h"

#include <QFile>
#include <QObject>
#include <QPointer>

#include <deque>
#include <mutex>
#include <vector>

namespace quorvane::fakes {

/// Records URLs byte for byte; the test completes each download itself.
///
/// Downloads belong to the main thread; fetch() may be called from any. A URL that the real loader would
/// refuse is refused here too, and recorded among the refused ones.
class FakeUrlLoader final : public platform::UrlLoader {
public:
    using FetchHandler = std::function<std::optional<QByteArray>(const QByteArray &url)>;

    bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                  Failed failed) override {
        const std::lock_guard lock(m_mutex);
        if (m_refusing || !platform::strictUrl(url)) {
            m_refused.push_back(url);
            return false;
        }
        m_downloaded.push_back(url);
        m_open.push_back({context, std::move(destination), std::move(finished), std::move(failed)});
        return true;
    }

    [[nodiscard]] std::optional<QByteArray> fetch(const QByteArray &url) override {
        FetchHandler present;
        {
            const std::lock_guard lock(m_mutex);
            if (!platform::strictUrl(url)) {
                m_refused.push_back(url);
                return std::nullopt;
            }
            m_fetched.push_back(url);
            present = m_handler;
        }
        return present ? present(url) : std::nullopt;
    }

    /// Completes the oldest open download: requests the destination, writes the body, calls finished. False
    /// when no download is open or the file cannot be written (then failed is called).
    bool finishNext(const QByteArray &body) {
        const auto job = takeNext();
        if (!job) {
            return false;
        }
        if (job->context.isNull()) {
            return true;
        }
        QFile file(job->destination());
        if (!file.open(QIODevice::WriteOnly)) {
            file.setFileName(job->destination()); // once more, as the real loader does
            file.open(QIODevice::WriteOnly);
        }
        if (!file.isOpen() || file.write(body) != body.size()) {
            job->failed({platform::UrlError::Kind::File, file.errorString()});
            return false;
        }
        file.close();
        job->finished();
        return true;
    }

    /// Fails the oldest open download. False when none is open.
    bool failNext(const platform::UrlError &error) {
        const auto job = takeNext();
        if (!job) {
            return false;
        }
        if (!job->context.isNull()) {
            job->failed(error);
        }
        return true;
    }

    /// Sets the handler that fetch() calls on the caller's thread, outside any lock. Without one every fetch
    /// fails.
    void setFetchHandler(FetchHandler newHandler) {
        const std::lock_guard lock(m_mutex);
        m_handler = std::move(newHandler);
    }

    /// Makes download() refuse every URL.
    void setRefusing(bool refuses) {
        const std::lock_guard lock(m_mutex);
        m_refusing = refuses;
    }

    [[nodiscard]] std::size_t openDownloads() const {
        const std::lock_guard lock(m_mutex);
        return m_open.size();
    }

    /// URLs of the started downloads, in order.
    [[nodiscard]] std::vector<QByteArray> downloads() const {
        const std::lock_guard lock(m_mutex);
        return m_downloaded;
    }

    [[nodiscard]] std::vector<QByteArray> fetches() const {
        const std::lock_guard lock(m_mutex);
        return m_fetched;
    }

    [[nodiscard]] std::vector<QByteArray> refusals() const {
        const std::lock_guard lock(m_mutex);
        return m_refused;
    }

private:
    struct Job {
        QPointer<QObject> context;
        Destination destination;
        Finished finished;
        Failed failed;
    };

    [[nodiscard]] std::optional<Job> takeNext() {
        const std::lock_guard lock(m_mutex);
        if (m_open.empty()) {
            return std::nullopt;
        }
        Job job = std::move(m_open.front());
        m_open.pop_front();
        return job;
    }

    mutable std::mutex m_mutex;
    std::deque<Job> m_open;
    std::vector<QByteArray> m_downloaded;
    std::vector<QByteArray> m_fetched;
    std::vector<QByteArray> m_refused;
    FetchHandler m_handler;
    bool m_refusing = false;
};

} // namespace quorvane::fakes

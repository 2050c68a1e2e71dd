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

/// Records URLs byte for byte; the test completes each download by hand.
///
/// Downloads belong to the main thread; fetch() may be called from any. A URL that the real loader
/// would refuse is refused here too, and recorded among the refused ones.
class FakeUrlLoader final : public platform::UrlLoader {
public:
    using FetchHandler = std::function<std::optional<QByteArray>(const QByteArray &url)>;

    bool download(const QByteArray &url, QObject *context, Destination destination, Finished finished,
                  Failed failed) override {
        const std::lock_guard lock(mutex);
        if (refusing || !platform::strictUrl(url)) {
            refused.push_back(url);
            return false;
        }
        downloaded.push_back(url);
        open.push_back({context, std::move(destination), std::move(finished), std::move(failed)});
        return true;
    }

    [[nodiscard]] std::optional<QByteArray> fetch(const QByteArray &url) override {
        FetchHandler present;
        {
            const std::lock_guard lock(mutex);
            if (!platform::strictUrl(url)) {
                refused.push_back(url);
                return std::nullopt;
            }
            fetched.push_back(url);
            present = handler;
        }
        return present ? present(url) : std::nullopt;
    }

    /// Completes the oldest open download: asks for the destination, writes the body, calls finished.
    /// False when no download is open or the file cannot be written (then failed is called).
    bool finishNext(const QByteArray &body) {
        const auto job = takeNext();
        if (!job) {
            return false;
        }
        if (job->context.isNull()) {
            return true;
        }
        QFile file(job->destination());
        if (!file.open(QIODevice::WriteOnly) || file.write(body) != body.size()) {
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

    /// Answers fetch(); called on the caller's thread, outside any lock. Without one every fetch fails.
    void setFetchHandler(FetchHandler newHandler) {
        const std::lock_guard lock(mutex);
        handler = std::move(newHandler);
    }

    /// Makes download() refuse whatever it is given.
    void setRefusing(bool refuses) {
        const std::lock_guard lock(mutex);
        refusing = refuses;
    }

    [[nodiscard]] std::size_t openDownloads() const {
        const std::lock_guard lock(mutex);
        return open.size();
    }

    /// URLs of the downloads started, in order.
    [[nodiscard]] std::vector<QByteArray> downloads() const {
        const std::lock_guard lock(mutex);
        return downloaded;
    }

    [[nodiscard]] std::vector<QByteArray> fetches() const {
        const std::lock_guard lock(mutex);
        return fetched;
    }

    [[nodiscard]] std::vector<QByteArray> refusals() const {
        const std::lock_guard lock(mutex);
        return refused;
    }

private:
    struct Job {
        QPointer<QObject> context;
        Destination destination;
        Finished finished;
        Failed failed;
    };

    [[nodiscard]] std::optional<Job> takeNext() {
        const std::lock_guard lock(mutex);
        if (open.empty()) {
            return std::nullopt;
        }
        Job job = std::move(open.front());
        open.pop_front();
        return job;
    }

    mutable std::mutex mutex;
    std::deque<Job> open;
    std::vector<QByteArray> downloaded;
    std::vector<QByteArray> fetched;
    std::vector<QByteArray> refused;
    FetchHandler handler;
    bool refusing = false;
};

} // namespace quorvane::fakes

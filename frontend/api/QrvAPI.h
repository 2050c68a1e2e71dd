#pragma once

#include "AnswerQueue.h"
#include "ServerModel.h"

#include <QObject>
#include <mutex>

namespace quorvane {

namespace platform {
struct UrlError;
}

class QrvAPI;

/// Receives the API client's notifications; both operations are optional. Main thread.
class QrvApiProtocol {
public:
    virtual ~QrvApiProtocol() = default;
    /// An answer was stored in the client's request record. Called while the client's lock is held.
    virtual void qrvAnswer(QrvAPI &api);
    /// A download failed; the record keeps its old fields.
    virtual void qrvFailed(const platform::UrlError &error);
};

/// The current request and the fields of its answer. Fields that an answer does not contain keep the values
/// of the previous answer.
struct QrvApiRequest {
    enum Kind : quint32 { None = 0, Auth = 5, Locations = 6, Browser = 7, Programs = 8, Parameters = 10 };

    quint32 kind = None;
    QString clientIP;          ///< public address that the service sees for this machine; null at first
    bool hasClientIP = false;  ///< the last answer itself contained it
    QString clientCountry;     ///< the service's country code for that address
    bool hasLocations = false; ///< the record refers to the client's location list
    QrvVpnDataList servers;
    qint8 status = 0; ///< 0: the request was accepted

    /// The kind's name, used in the name of the temporary file.
    [[nodiscard]] static QString kindName(quint32 kind);
};

/// The client of the service's HTTPS API. Main thread; downloads report their results there.
///
/// There is one request record and no queue: callers start one request at a time, and every answer is read as
/// that of the request started last, whatever became of the answers before it.
class QrvAPI final : public QObject {
    Q_OBJECT

public:
    QrvAPI();
    ~QrvAPI() override;

    [[nodiscard]] static QrvAPI &sharedApi();

    /// Sets the delegate (not owned, must outlive its use here), computes the device identifier, clears the
    /// locations and observes "inetStatus"; a second call adds a second observer.
    QrvAPI &initWithDelegate(QrvApiProtocol *newDelegate);

    void setDelegate(QrvApiProtocol *delegate) { m_delegate = delegate; }

    [[nodiscard]] bool inetConnect() const { return m_connected; }

    void setInetConnect(bool connected) { m_connected = connected; }

    void inetStatus(const QVariant &number);

    /// The device identifier, computed on first use and kept.
    [[nodiscard]] QString macSerial();
    [[nodiscard]] QString platformSerialNumber() const;
    /// Twelve upper-case hexadecimal digits; a null text without an Ethernet interface.
    [[nodiscard]] static QString alternativePlatformSerialNumber();

    [[nodiscard]] QString baseUrl();
    /// True when a download was started; false at once without a network.
    bool apiRequest(const QString &url);
    bool cmdAuth(const QString &text);
    /// Requests the server list, or, while a request is under way, when that one has ended.
    void requestListAgain();
    bool setParameters(const QString &text, const QString &parameters);
    /// There is no lease to renew with this service: sends nothing.
    void getLease(const QString &text);
    void freeRequest();

    [[nodiscard]] const QrvApiRequest &request() const { return m_record; }

    [[nodiscard]] const ServerModel &model() const { return m_servers; }

    [[nodiscard]] ServerModel &model() { return m_servers; }

    [[nodiscard]] quint32 attempts() const { return m_attemptCount; }

    /// Chooses and remembers the temporary file of the current download.
    QString decideDestination();
    /// Reads the file; a long answer reaches the delegate later, and every report after it in its order.
    void downloadDidFinish();
    void downloadDidFail(const platform::UrlError &error);
    void showNotification(const QString &title);

    /// Clears the values that outlive one client: the network-card serial and whether the server list was
    /// requested. For tests, where one process runs many clients.
    static void forgetProcessWideValues();

private:
    /// A file of the same name in a folder of the user's own: all users can make files in the temporary one.
    QString decideOtherDestination();
    void downloadEnded();
    void answerRead(quint32 kind, const QString &path, const std::optional<ReadAnswer> &answer);
    void recordAnswer(const ReadAnswer &answer);

    QrvApiProtocol *m_delegate = nullptr;
    QString m_serial;
    bool m_connected = false;
    QrvApiRequest m_record;
    ServerModel m_servers;
    QString m_destinationFile;
    AnswerQueue m_answers;
    quint32 m_attemptCount = 0;
    quint32 m_requestedKind = QrvApiRequest::None;
    int m_openDownloads = 0;
    bool m_listWanted = false;
    std::recursive_mutex m_answerLock;
};

} // namespace quorvane

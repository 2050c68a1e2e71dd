#include "CurlExchange.h"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>
#include <utility>

namespace quorvane::platform {

namespace {

/// All heads of an answer and the trailers together.
constexpr qint64 largestHead = qint64{64} * 1024;
constexpr long firstFinalStatus = 200;

/// Sockets are not passed on to the programs that are started meanwhile.
curl_socket_t openSocket(void * /*data*/, curlsocktype /*purpose*/, curl_sockaddr *address) {
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

QByteArray targetOf(const QUrl &url) {
    const QString path = url.path(QUrl::FullyEncoded);
    QByteArray target = path.isEmpty() ? QByteArray("/") : path.toLatin1();
    if (url.hasQuery()) {
        target += '?' + url.query(QUrl::FullyEncoded).toLatin1();
    }
    return target;
}

bool isLength(const QByteArray &text) {
    constexpr qsizetype mostDigits = 15; // far from the end of 64 bits
    return !text.isEmpty() && text.size() <= mostDigits &&
           std::all_of(text.begin(), text.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
}

bool isRedirect(long status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

UrlError::Kind kindOf(CURLcode code, long systemError) {
    switch (static_cast<int>(code)) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return UrlError::Kind::NoHost;
    case CURLE_COULDNT_CONNECT:
        return systemError == ECONNREFUSED ? UrlError::Kind::Refused : UrlError::Kind::Other;
    case CURLE_OPERATION_TIMEDOUT:
        return UrlError::Kind::TimedOut;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
        return UrlError::Kind::Tls;
    default:
        return UrlError::Kind::Other;
    }
}

} // namespace

CurlExchange::CurlExchange(const CurlLibrary &curl, const UrlRequest &request, long family,
                           qint64 largestBody, QObject *parent)
    : QObject(parent), m_curl(curl), m_largestBody(largestBody), m_multi(curl.multiInit()),
      m_easy(curl.easyInit()) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] { act(CURL_SOCKET_TIMEOUT, 0); });
    if (m_multi == nullptr || m_easy == nullptr) {
        m_code = CURLE_FAILED_INIT;
    } else {
        configure(request, family);
        configureTls(request);
        configureCallbacks();
    }
    if (m_code == CURLE_OK && m_curl.multiAddHandle(m_multi, m_easy) != CURLM_OK) {
        m_code = CURLE_FAILED_INIT;
    }
    if (m_code != CURLE_OK) {
        m_timer.start(0);
    }
}

CurlExchange::~CurlExchange() {
    if (m_multi != nullptr && m_easy != nullptr) {
        m_curl.multiRemoveHandle(m_multi, m_easy);
    }
    m_curl.easyCleanup(m_easy);
    m_curl.multiCleanup(m_multi);
    m_curl.slistFreeAll(m_fields);
    m_curl.slistFreeAll(m_resolved);
}

template <typename Value>
void CurlExchange::set(CURLoption option, Value value) {
    if (m_code == CURLE_OK) {
        m_code = m_curl.easySetopt(m_easy, option, value);
    }
}

void CurlExchange::configure(const UrlRequest &request, long family) {
    // A packed body could unfold far beyond the limit.
    for (const char *field : {"Accept-Encoding: identity", "Connection: close"}) {
        curl_slist *longer = m_curl.slistAppend(m_fields, field);
        if (longer == nullptr) {
            m_code = CURLE_FAILED_INIT;
            return;
        }
        m_fields = longer;
    }
    set(CURLOPT_URL, request.url.toEncoded().constData());
    set(CURLOPT_PATH_AS_IS, 1L);
    set(CURLOPT_REQUEST_TARGET, targetOf(request.url).constData());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_HTTP09_ALLOWED, 0L);
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_HTTPHEADER, m_fields);
    set(CURLOPT_USERAGENT, request.userAgent.constData());
    // The proxies of the environment are not used.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_NOPROXY, "*");
    set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_IPRESOLVE, family);
    set(CURLOPT_NOSIGNAL, 1L);
    // A name look-up that is still under way is left behind and not waited for.
    set(CURLOPT_QUICK_EXIT, 1L);
    if (!request.addresses.isEmpty()) {
        const QUrl &url = request.url;
        const int port = url.port(url.scheme() == QStringLiteral("http") ? 80 : 443);
        const QByteArray entry =
            url.host().toLatin1() + ':' + QByteArray::number(port) + ':' + request.addresses.join(',');
        m_resolved = m_curl.slistAppend(nullptr, entry.constData());
        set(CURLOPT_RESOLVE, m_resolved);
    }
}

void CurlExchange::configureTls(const UrlRequest &request) {
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    // From the folder, single certificates are read when a host needs them. The system's bundle would be read
    // as a whole for every request.
    set(CURLOPT_CAPATH, request.authorityFolder.constData());
    set(CURLOPT_CAINFO, request.authorityFile.isEmpty() ? nullptr : request.authorityFile.constData());
}

void CurlExchange::configureCallbacks() {
    set(CURLOPT_ERRORBUFFER, m_errorText.data());
    set(CURLOPT_OPENSOCKETFUNCTION, &openSocket);
    set(CURLOPT_HEADERFUNCTION, &CurlExchange::headCallback);
    set(CURLOPT_HEADERDATA, static_cast<void *>(this));
    set(CURLOPT_WRITEFUNCTION, &CurlExchange::bodyCallback);
    set(CURLOPT_WRITEDATA, static_cast<void *>(this));
    m_curl.multiSetopt(m_multi, CURLMOPT_SOCKETFUNCTION, &CurlExchange::socketCallback);
    m_curl.multiSetopt(m_multi, CURLMOPT_SOCKETDATA, static_cast<void *>(this));
    m_curl.multiSetopt(m_multi, CURLMOPT_TIMERFUNCTION, &CurlExchange::timerCallback);
    m_curl.multiSetopt(m_multi, CURLMOPT_TIMERDATA, static_cast<void *>(this));
}

void CurlExchange::act(curl_socket_t socket, int events) {
    if (m_state != State::Running) {
        return;
    }
    if (m_code != CURLE_OK) {
        end(m_code);
    } else {
        int running = 0;
        if (m_curl.multiSocketAction(m_multi, socket, events, &running) != CURLM_OK) {
            end(CURLE_FAILED_INIT);
        }
        int left = 0;
        while (const CURLMsg *message = m_curl.multiInfoRead(m_multi, &left)) {
            if (message->msg == CURLMSG_DONE) {
                end(message->data.result);
            }
        }
    }
    Q_EMIT advanced(socket != CURL_SOCKET_TIMEOUT);
}

void CurlExchange::end(CURLcode code) {
    m_code = code;
    if (!m_location.isEmpty() && !m_refusal) {
        m_state = State::Redirect;
        return;
    }
    // libcurl calls an answer without the end of its head complete.
    if (code == CURLE_OK && !m_headIsWhole && !m_refusal) {
        m_refusal = UrlError::Kind::Other;
    }
    m_state = code == CURLE_OK && !m_refusal ? State::Complete : State::Failed;
}

UrlError CurlExchange::error() const {
    // libcurl has a bound of its own on a line and calls a longer one a lack of memory.
    if (m_refusal == UrlError::Kind::TooLarge || (!m_refusal && m_code == CURLE_OUT_OF_MEMORY)) {
        return {UrlError::Kind::TooLarge, QStringLiteral("the answer is too large")};
    }
    if (m_refusal) {
        return {*m_refusal, QStringLiteral("the answer is not HTTP, or is incomplete")};
    }
    long systemError = 0;
    if (m_easy != nullptr) {
        m_curl.easyGetinfo(m_easy, CURLINFO_OS_ERRNO, &systemError);
    }
    const char *text = m_errorText.front() != '\0' ? m_errorText.data() : m_curl.easyStrerror(m_code);
    return {kindOf(m_code, systemError), QString::fromUtf8(text)};
}

QByteArray CurlExchange::nextPiece() {
    return std::exchange(m_body, {});
}

bool CurlExchange::refuse(UrlError::Kind kind) {
    m_refusal = kind;
    return false;
}

bool CurlExchange::acceptHeadLine(const QByteArray &line) {
    m_headSize += line.size();
    if (m_headSize > largestHead) {
        return refuse(UrlError::Kind::TooLarge);
    }
    const bool isLast = line == "\r\n" || line == "\n";
    // An interim answer is followed by the real one. Trailers look like a head.
    if (!isLast || m_headIsWhole || status() < firstFinalStatus) {
        return true;
    }
    m_headIsWhole = true;
    return acceptHead();
}

bool CurlExchange::acceptHead() {
    long version = 0;
    m_curl.easyGetinfo(m_easy, CURLINFO_HTTP_VERSION, &version);
    if (version != CURL_HTTP_VERSION_1_0 && version != CURL_HTTP_VERSION_1_1) {
        return refuse(UrlError::Kind::Other);
    }
    const QByteArrayList codings = fields("Transfer-Encoding");
    // libcurl would unpack other codings, which the request did not offer.
    const bool onlyChunks = std::all_of(codings.begin(), codings.end(), [](const QByteArray &coding) {
        return coding.toLower() == "chunked";
    });
    if (!onlyChunks) {
        return refuse(UrlError::Kind::Other);
    }
    if (!acceptLength()) {
        return false;
    }
    const QByteArrayList targets = fields("Location");
    if (isRedirect(status()) && !targets.isEmpty() && !targets.last().isEmpty()) {
        m_location = targets.last();
        return false;
    }
    return true;
}

bool CurlExchange::acceptLength() {
    const QByteArrayList lengths = fields("Content-Length");
    if (lengths.isEmpty()) {
        return true;
    }
    // libcurl reads "5x" as 5 and lets a second length replace the first.
    const qint64 first = lengths.first().toLongLong();
    const bool agree = std::all_of(lengths.begin(), lengths.end(), [first](const QByteArray &length) {
        return isLength(length) && length.toLongLong() == first;
    });
    if (!agree) {
        return refuse(UrlError::Kind::Other);
    }
    return first <= m_largestBody || refuse(UrlError::Kind::TooLarge);
}

QByteArrayList CurlExchange::fields(const char *name) const {
    QByteArrayList values;
    curl_header *field = nullptr;
    for (size_t index = 0; m_curl.easyHeader(m_easy, name, index, CURLH_HEADER, -1, &field) == CURLHE_OK;
         ++index) {
        values.append(QByteArray(field->value).trimmed());
    }
    return values;
}

long CurlExchange::status() const {
    long status = 0;
    m_curl.easyGetinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
    return status;
}

size_t CurlExchange::headCallback(char *bytes, size_t /*size*/, size_t count, void *self) {
    const QByteArray line(bytes, static_cast<qsizetype>(count));
    return static_cast<CurlExchange *>(self)->acceptHeadLine(line) ? count : 0;
}

size_t CurlExchange::bodyCallback(char *bytes, size_t /*size*/, size_t count, void *self) {
    auto *exchange = static_cast<CurlExchange *>(self);
    exchange->m_received += static_cast<qint64>(count);
    if (exchange->m_received > exchange->m_largestBody) {
        return exchange->refuse(UrlError::Kind::TooLarge) ? count : 0;
    }
    exchange->m_body.append(bytes, static_cast<qsizetype>(count));
    return count;
}

int CurlExchange::socketCallback(CURL * /*easy*/, curl_socket_t socket, int events, void *self,
                                 void * /*socketData*/) {
    static_cast<CurlExchange *>(self)->watch(socket, events);
    return 0;
}

void CurlExchange::watch(curl_socket_t socket, int events) {
    if (events == CURL_POLL_REMOVE) {
        m_sockets.erase(socket);
        return;
    }
    const auto [entry, isNew] = m_sockets.try_emplace(socket);
    Watch &watch = entry->second;
    if (isNew) {
        watch.reading.setSocket(socket);
        watch.writing.setSocket(socket);
        connect(&watch.reading, &QSocketNotifier::activated, this,
                [this, socket] { act(socket, CURL_CSELECT_IN); });
        connect(&watch.writing, &QSocketNotifier::activated, this,
                [this, socket] { act(socket, CURL_CSELECT_OUT); });
    }
    watch.reading.setEnabled((events & CURL_POLL_IN) != 0);
    watch.writing.setEnabled((events & CURL_POLL_OUT) != 0);
}

int CurlExchange::timerCallback(CURLM * /*multi*/, long milliseconds, void *self) {
    QTimer &timer = static_cast<CurlExchange *>(self)->m_timer;
    if (milliseconds < 0) {
        timer.stop();
    } else {
        timer.start(static_cast<int>(milliseconds));
    }
    return 0;
}

} // namespace quorvane::platform

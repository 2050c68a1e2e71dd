#include "SessionLog.h"

#include "platform/Files.h"
#include "platform/Platform.h"

#include <QFile>
#include <QFileInfo>
#include <mutex>

namespace quorvane {

namespace {

QString path() {
    return platform::Platform::current().account.documents() + QStringLiteral("/qrvp.log");
}

/// Control characters, marks of direction, line and paragraph separators, unassigned code points and lone
/// surrogates: a line must be one line, and be what it looks like.
bool isVisible(char32_t character) {
    const QChar::Category category = QChar::category(character);
    return category != QChar::Other_Control && category != QChar::Other_Format &&
           category != QChar::Other_Surrogate && category != QChar::Other_NotAssigned &&
           category != QChar::Separator_Line && category != QChar::Separator_Paragraph;
}

QString plainTitle(const QString &title) {
    QString plain;
    qsizetype length = 0;
    for (const char32_t character : title.left(2 * SessionLog::longestTitle).toUcs4()) {
        if (length == SessionLog::longestTitle) {
            break;
        }
        ++length;
        plain +=
            isVisible(character) ? QString::fromUcs4(&character, 1) : QString(QChar::ReplacementCharacter);
    }
    return plain;
}

/// Makes room for one more line. False when there is none, since the full log can neither get another name
/// nor be removed.
bool makeRoom(const QString &log, qsizetype size) {
    if (QFileInfo(log).size() + size <= SessionLog::maximumSize) {
        return true;
    }
    const bool isGone = platform::renameFile(log, log + QStringLiteral(".old")) == 0 || QFile::remove(log);
    return isGone && platform::appendToPlainFile(log, {}, platform::MissingFile::IsCreated) == 0;
}

} // namespace

void SessionLog::ensureExists() {
    // A log that cannot be created keeps nothing from being started, here and below.
    static_cast<void>(platform::appendToPlainFile(path(), {}, platform::MissingFile::IsCreated));
}

void SessionLog::append(const QString &event, const QString &title) {
    static std::mutex writing;
    const QByteArray line = (event + QChar(u' ') + plainTitle(title) + QChar(u'\n')).toUtf8();
    const QString log = path();
    const std::lock_guard lock(writing);
    if (makeRoom(log, line.size())) {
        static_cast<void>(platform::appendToPlainFile(log, line, platform::MissingFile::IsAnError));
    }
}

} // namespace quorvane

#include "SystemLog.h"

#include "PreferenceTable.h"
#include "PreferencesStore.h"

namespace quorvane::platform {

namespace {

/// The line with every control character, line separator and lone surrogate written as an escape.
QString escaped(const QString &line) {
    QString result;
    result.reserve(line.size());
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar unit = line[i];
        const bool pair = unit.isHighSurrogate() && i + 1 < line.size() && line[i + 1].isLowSurrogate();
        if (pair) {
            result += unit;
            result += line[++i];
        } else if (unit == u'\n') {
            result += QStringLiteral("\\n");
        } else if (unit == u'\r') {
            result += QStringLiteral("\\r");
        } else if (unit == u'\t') {
            result += QStringLiteral("\\t");
        } else if (unit.category() == QChar::Other_Control || unit.category() == QChar::Other_Format ||
                   unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator || unit.isSurrogate()) {
            result += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            result += unit;
        }
    }
    return result;
}

} // namespace

SystemLog::SystemLog(LogSink &sink, const PreferencesStore &preferences)
    : m_sink(sink), m_preferences(preferences) {}

void SystemLog::setMask(Mask newMask) {
    const std::lock_guard lock(m_mutex);
    m_mask = std::move(newMask);
}

bool SystemLog::gateOpen() const {
    return m_preferences.integer(keyOf(Preference::ShowLogs)) == 0;
}

void SystemLog::write(const QString &line) {
    if (gateOpen()) {
        writeAlways(line);
    }
}

void SystemLog::writeAlways(const QString &line) {
    Mask present;
    {
        const std::lock_guard lock(m_mutex);
        present = m_mask;
    }
    // The mask reads the preferences, so it runs outside the lock.
    m_sink.write(escaped(present ? present(line) : line));
}

} // namespace quorvane::platform

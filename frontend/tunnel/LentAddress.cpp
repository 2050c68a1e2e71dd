#include "LentAddress.h"

#include "platform/Platform.h"

#include <QProcess>
#include <QStringDecoder>

namespace quorvane {

QString LentAddress::read(const QString &configurationPath) {
    const QString script = platform::Platform::current().bundle->pathForResource(QStringLiteral("extractip"),
                                                                                 QStringLiteral("sh"));
    if (script.isNull()) {
        return {};
    }
    QProcess bash;
    bash.setStandardInputFile(QProcess::nullDevice());
    bash.setStandardErrorFile(QProcess::nullDevice());
    bash.start(QStringLiteral("/bin/bash"), {script, configurationPath});
    if (!bash.waitForFinished(-1)) {
        return {};
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder.decode(bash.readAllStandardOutput());
    return decoder.hasError() ? QString() : text;
}

} // namespace quorvane

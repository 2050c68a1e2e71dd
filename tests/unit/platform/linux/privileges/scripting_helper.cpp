// Runs one administrator line for the user that started it. Reads line, name and password from standard
// input, each ended by NUL; a field that is a single \x01 is an absent text. Writes "1" or "0", the text, the
// error number ("-" for none), the message and the other question, each ended by NUL. A second argument is
// the long silence in milliseconds.

#include "platform/linux/privileges/SudoScriptingService.h"

#include <QCoreApplication>
#include <QFile>

using namespace quorvane;

namespace {

QString field(const QByteArrayList &fields, qsizetype index) {
    const QByteArray bytes = fields.value(index);
    return bytes == "\x01" ? QString() : bytes.isEmpty() ? QStringLiteral("") : QString::fromUtf8(bytes);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QFile input;
    QFile output;
    if (argc < 2 || argc > 3 || !input.open(stdin, QIODevice::ReadOnly) ||
        !output.open(stdout, QIODevice::WriteOnly)) {
        return 2;
    }
    const QByteArrayList fields = input.readAll().split('\0');
    constexpr int usualSilence = 120000;
    platform::SudoScriptingService service(QFile::decodeName(argv[1]),
                                           argc == 3 ? QByteArray(argv[2]).toInt() : usualSilence);
    const platform::ScriptResult result =
        service.runAsAdministrator(field(fields, 0), field(fields, 1), field(fields, 2));
    const QByteArray number = result.errorNumber ? QByteArray::number(*result.errorNumber) : QByteArray("-");
    const QByteArrayList answer{result.succeeded ? "1" : "0", result.text.toUtf8(), number,
                                result.errorMessage.toUtf8(), result.otherQuestion.toUtf8()};
    return output.write(answer.join('\0')) > 0 ? 0 : 2;
}

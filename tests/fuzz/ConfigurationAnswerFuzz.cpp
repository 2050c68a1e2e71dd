#include "Fuzz.h"
#include "frontend/api/ConfigurationAnswer.h"

#include <QStringList>

using namespace quorvane;

namespace {

const QString lineEnd = QStringLiteral("<br />");

void checkCertificate(const QString &text) {
    const QString marker = QStringLiteral("VPNConfig: ");
    const QString certificate = ConfigurationAnswer::getCertificate(text);
    must(certificate.isNull() != text.contains(marker), "there is a configuration if there is its marker");
    must(!certificate.contains(lineEnd), "every line end was converted");
    if (!certificate.isNull()) {
        const QString rest = text.mid(text.indexOf(marker) + marker.size());
        must(certificate == rest.split(lineEnd).join(u'\n'), "nothing else of the configuration changes");
    }
}

void checkAddress(const QString &text) {
    const QString marker = QStringLiteral("remote ");
    const QString address = ConfigurationAnswer::getIPAdress(text);
    const QString rest = text.section(marker, 1);
    must(address.isNull() != (text.contains(marker) && rest.contains(lineEnd)),
         "there is an address if its marker and a line end after it are present");
    must(address.isNull() || rest.startsWith(address + lineEnd), "the address reaches up to the line's end");
    must(!address.contains(lineEnd), "the address stays on its line");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    const QString text = textOf(bytes);
    checkCertificate(text);
    checkAddress(text);
    must(ConfigurationAnswer::isArgumentError(text) == (bytes == "ERR: Argument parsing error"),
         "only the exact message is the error");
    must(ConfigurationAnswer::getCertificate(QStringLiteral("VPNConfig: ") + text) ==
             QString(text).replace(lineEnd, QStringLiteral("\n")),
         "the first marker counts");
}

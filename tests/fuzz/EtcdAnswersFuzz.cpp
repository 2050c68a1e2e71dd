#include "Fuzz.h"
#include "core/Base64.h"
#include "core/EtcdMessages.h"
#include "core/SharedFacts.h"

#include <string>

namespace {

using quorvane::service::base64Of;
using quorvane::service::bytesInBase64;
using quorvane::service::SharedFacts;
using quorvane::service::SharedOrders;
namespace etcd = quorvane::service::etcd;

void checkEntry(const etcd::Entry &entry) {
    must(!entry.key.empty() && entry.key.size() <= etcd::maximumKey, "a key has a length within its bounds");
    must(entry.value.size() <= etcd::maximumValue, "a value has a length within its bounds");
    must(entry.modified >= 0, "a revision is not negative");
}

/// What a node knows is the same after it was in its files.
void checkFacts(const SharedFacts &facts) {
    SharedFacts later(facts.prefix());
    must(later.load(facts.text()).ok(), "the file of the facts can be read");
    must(later.gateways() == facts.gateways() && later.owners() == facts.owners(), "and says the same");
    SharedOrders orders;
    for (const std::string &key : facts.orders().keys()) {
        must(orders.add(key, *facts.orders().value(key)), "an order can be shared again");
        must(facts.orders().isIn(key, orders), "and is the same order");
    }
    must(orders == facts.orders(), "so all of them are the same");
}

void checkRange(std::string_view bytes) {
    const auto range = etcd::parseRange(bytes);
    if (!range) {
        must(!range.error().empty(), "a refusal has a reason");
        return;
    }
    must(range.value().revision >= 0 && range.value().count >= 0, "numbers are not negative");
    for (const etcd::Entry &entry : range.value().entries) {
        checkEntry(entry);
    }
    SharedFacts facts("/quorvane/");
    facts.replace(range.value().entries);
    checkFacts(facts);
}

void checkWatch(std::string_view bytes) {
    const auto watch = etcd::parseWatch(bytes);
    if (!watch) {
        return;
    }
    SharedFacts facts("/quorvane/");
    for (const etcd::Event &event : watch.value().events) {
        checkEntry(event.entry);
        facts.apply(event);
    }
    checkFacts(facts);
}

void checkOthers(std::string_view bytes) {
    const auto lease = etcd::parseLease(bytes);
    must(!lease || lease.value().id > 0, "a lease has a number");
    const auto kept = etcd::parseKeptLease(bytes);
    must(!kept || kept.value().seconds >= 0, "a time is not negative");
    const auto transaction = etcd::parseTransaction(bytes);
    if (transaction && transaction.value().found) {
        checkEntry(*transaction.value().found);
    }
    must(!transaction || etcd::parseDone(bytes).ok(), "a transaction has the header of every answer");
}

/// The values of keys come from other nodes.
void checkValues(std::string_view bytes) {
    const std::string value(bytes.substr(0, etcd::maximumValue));
    SharedFacts facts("/quorvane/");
    facts.replace({{"/quorvane/gateways/gw1", value},
                   {"/quorvane/owners/203.0.113.5", value},
                   {"/quorvane/orders/drain", value},
                   {"/quorvane/orders/users/user1", value},
                   {"/quorvane/orders/addresses/203.0.113.5", value},
                   {"/quorvane/orders/users/" + value.substr(0, 100), R"({"end":1})"}});
    checkFacts(facts);
}

void checkBase64(std::string_view bytes) {
    must(bytesInBase64(base64Of(bytes)) == bytes, "what is encoded can be decoded");
    const auto decoded = bytesInBase64(bytes);
    must(!decoded || base64Of(*decoded) == bytes, "a text has one meaning only");
}

} // namespace

void fuzzOne(std::string_view bytes) {
    checkRange(bytes);
    checkWatch(bytes);
    checkOthers(bytes);
    checkValues(bytes);
    checkBase64(bytes);
}

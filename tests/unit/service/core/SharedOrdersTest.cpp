#include "core/SharedOrders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace quorvane::service {

namespace {

using std::chrono::microseconds;
using testing::ElementsAre;
using TimePoint = SharedOrders::TimePoint;

const Ipv4Address berlin = *Ipv4Address::parse("203.0.113.5");

TimePoint at(std::int64_t time) {
    return TimePoint(microseconds(time));
}

SharedOrders sample() {
    SharedOrders orders;
    orders.drain = {true, at(5)};
    orders.users.emplace("user1", at(100));
    orders.addresses[berlin] = {at(7), at(90)};
    return orders;
}

TEST(SharedOrders, EveryOrderIsAKeyWithAValue) {
    const SharedOrders orders = sample();
    EXPECT_THAT(orders.keys(), ElementsAre("drain", "users/user1", "addresses/203.0.113.5"));
    SharedOrders copy;
    for (const std::string &key : orders.keys()) {
        EXPECT_FALSE(orders.isIn(key, copy));
        EXPECT_TRUE(copy.add(key, *orders.value(key)));
        EXPECT_TRUE(orders.isIn(key, copy));
    }
    EXPECT_EQ(copy, orders);
    EXPECT_EQ(orders.end("users/user1"), at(100));
    EXPECT_EQ(orders.end("addresses/203.0.113.5"), at(90));
    EXPECT_EQ(orders.end("drain"), std::nullopt);
    for (const std::string &key : orders.keys()) {
        copy.remove(key);
    }
    EXPECT_EQ(copy, SharedOrders());
}

TEST(SharedOrders, TheLatestOrderCounts) {
    SharedOrders orders = sample();
    EXPECT_TRUE(orders.add("drain", R"({"on":false,"given":4})"));
    EXPECT_TRUE(orders.drain.on);
    EXPECT_TRUE(orders.add("drain", R"({"on":false,"given":6})"));
    EXPECT_FALSE(orders.drain.on);
    EXPECT_TRUE(orders.add("addresses/203.0.113.5", R"({"issued_until":3,"end":95})"));
    EXPECT_EQ(orders.addresses.at(berlin), (SharedOrders::Address{at(7), at(95)}));
    EXPECT_FALSE(sample().isIn("drain", SharedOrders()));
    EXPECT_TRUE(sample().isIn("drain", orders));
}

TEST(SharedOrders, MalformedOrdersAreRefused) {
    SharedOrders orders;
    const std::pair<std::string, std::string> malformed[] = {
        {"drain", "x"},
        {"drain", R"({"on":1,"given":1})"},
        {"drain", R"({"on":true,"given":-1})"},
        {"drain", R"({"on":true,"given":1e300})"},
        {"drain", R"({"on":true,"given":18446744073709551615})"},
        {"users/", R"({"end":1})"},
        {"users/a b", R"({"end":1})"},
        {"users/\xff", R"({"end":1})"},
        {"users/" + std::string(1000, 'a'), R"({"end":1})"},
        {"users/a", "{}"},
        {"addresses/host", R"({"issued_until":1,"end":1})"},
        {"addresses/203.0.113.5", R"({"end":1})"},
        {"other", "{}"}};
    for (const auto &[key, value] : malformed) {
        EXPECT_FALSE(orders.add(key, value)) << key << ' ' << value;
    }
    EXPECT_EQ(orders, SharedOrders());
}

} // namespace

} // namespace quorvane::service

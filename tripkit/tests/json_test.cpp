#include "tripkit/json.h"

#include <gtest/gtest.h>

#include "tripkit/fares.h"

namespace tripkit {
namespace {

// The full error text of decoding `text` as T, or "" when it decodes.
template <class T>
std::string errorOf(const std::string& text, const std::string& source = "flights/JFK.json") {
    try {
        json::decodeDocument<T>(text, source);
        return "";
    } catch (const json::DecodeError& e) {
        return e.what();
    }
}

const char* kDeal =
    R"({"destination":"LIS","city":"Lisbon","country":"Portugal","price":199,)"
    R"("depart":"2026-05-14","airline":"TP","stops":0})";

TEST(Json, ErrorsNameSourceAndKeyPath) {
    const std::string book = std::string(R"({"origin":"JFK","updated":"2026-05-01","toOrlando":{},)") +
                             R"("fromOrlando":{"2026-05-02":[{"airline":"B6","price":"cheap","stops":0}]},)" +
                             R"("deals":[)" + kDeal + "]}";
    EXPECT_EQ(errorOf<FareBook>(book),
              "flights/JFK.json: fromOrlando.2026-05-02[0].price: expected a number");

    std::string noCity = kDeal;
    noCity.replace(noCity.find(R"("city":"Lisbon",)"), 16, "");
    EXPECT_EQ(errorOf<std::vector<Deal>>(std::string("[") + kDeal + "," + noCity + "]"),
              "flights/JFK.json: [1].city: required key is missing");

    std::string stops = kDeal;
    stops.replace(stops.find(R"("stops":0)"), 9, R"("stops":1.5)");
    EXPECT_EQ(errorOf<Deal>(stops), "flights/JFK.json: stops: expected an integer");
    EXPECT_EQ(errorOf<Deal>("[]"), "flights/JFK.json: expected an object");
    EXPECT_EQ(errorOf<FareBook>(R"({"origin":"JFK","updated":"x","toOrlando":[],"fromOrlando":{},"deals":[]})"),
              "flights/JFK.json: toOrlando: expected an object");
    EXPECT_EQ(errorOf<FareBook>(R"({"origin":7})"), "flights/JFK.json: origin: expected a string");
}

TEST(Json, HostileDocumentsFailCleanly) {
    std::string truncated = kDeal;
    truncated.resize(truncated.size() / 2);
    EXPECT_NE(errorOf<Deal>(truncated).find("flights/JFK.json: not valid JSON"), std::string::npos);
    EXPECT_NE(errorOf<Deal>("").find("not valid JSON"), std::string::npos);
    EXPECT_NE(errorOf<Deal>(std::string(100000, '[') + std::string(100000, ']')).find("not valid JSON"),
              std::string::npos);
    std::string huge = kDeal;
    huge.replace(huge.find("199"), 3, "1e999");
    EXPECT_NE(errorOf<Deal>(huge), "");
    std::string bigInt = kDeal;
    bigInt.replace(bigInt.find(R"("stops":0)"), 9, R"("stops":99999999999999999999)");
    EXPECT_NE(errorOf<Deal>(bigInt), "");
    std::string overInt = kDeal;
    overInt.replace(overInt.find(R"("stops":0)"), 9, R"("stops":4294967296)");
    EXPECT_EQ(errorOf<Deal>(overInt), "flights/JFK.json: stops: integer out of range");
    // Trailing garbage after a complete document.
    EXPECT_NE(errorOf<Deal>(std::string(kDeal) + "}"), "");
}

TEST(Json, OptionalKeysAndCaseKeyedForms) {
    auto doc = json::parse(R"({"a":null,"b":"x","e":{"disney":{"_0":3}},"two":{"a":{},"b":{}},"none":{}})", "t");
    json::Value root = doc.root();
    EXPECT_FALSE(root.getOptional<std::string>("a").has_value());
    EXPECT_FALSE(root.getOptional<std::string>("zzz").has_value());
    EXPECT_EQ(root.getOptional<std::string>("b"), "x");
    auto [name, payload] = root.field("e").caseKeyed();
    EXPECT_EQ(name, "disney");
    EXPECT_EQ(payload.get<int>("_0"), 3);
    EXPECT_EQ(payload.path(), "e.disney");
    for (const char* key : {"two", "none"}) {
        try {
            root.field(key).caseKeyed();
            FAIL() << key;
        } catch (const json::DecodeError& e) {
            EXPECT_EQ(e.message, "Invalid number of keys found, expected one.");
        }
    }
}

// Element i of an array value.
json::Value element(const json::Value& array, std::size_t i) {
    std::optional<json::Value> out;
    std::size_t at = 0;
    array.forEach([&](const json::Value& e) {
        if (at++ == i) out = e;
    });
    return *out;
}

TEST(Json, PathsAreFoundFromTheDocumentWhenAnErrorIsMade) {
    auto doc = json::parse(R"({"a":[1,{"b":[[],{"c":"x"}]},[]],"d":{"":5,"e.f":[null]},"a2":[]})", "t");
    const json::Value root = doc.root();
    // Kept after the values they came from are gone: a Value needs only its document.
    std::optional<json::Value> c;
    {
        const json::Value inner = element(root.field("a"), 1);
        c = element(inner.field("b"), 1).field("c");
    }
    EXPECT_EQ(c->path(), "a[1].b[1].c");
    EXPECT_EQ(root.path(), "");
    EXPECT_EQ(root.field("d").field("").path(), "d.");
    EXPECT_EQ(element(root.field("d").field("e.f"), 0).path(), "d.e.f[0]");
    EXPECT_EQ(root.field("a2").path(), "a2");
    try {
        element(root.field("a"), 2).field("z");
        FAIL();
    } catch (const json::DecodeError& e) {
        EXPECT_EQ(std::string(e.what()), "t: a[2]: expected an object");
    }
    try {
        c->number();
        FAIL();
    } catch (const json::DecodeError& e) {
        EXPECT_EQ(std::string(e.what()), "t: a[1].b[1].c: expected a number");
    }
}

TEST(Json, NumbersAreWrittenAsPeopleReadThem) {
    EXPECT_EQ(json::number(199.0).dump(), "199");
    EXPECT_EQ(json::number(199.5).dump(), "199.5");
    EXPECT_EQ(json::number(1e300).dump(), "1e+300");
}

}  // namespace
}  // namespace tripkit

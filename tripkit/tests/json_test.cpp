#include "tripkit/json.h"

#include <gtest/gtest.h>

#include "tripkit/fares.h"
#include "tripkit/json_fields.h"
#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

template <class T>
std::string errorOf(const std::string& text, const std::string& source = "flights/JFK.json") {
    return testing::decodeError<T>(text, source);
}

const char* kDeal = R"({"destination":"LIS","city":"Lisbon","country":"Portugal","price":199,)"
                    R"("depart":"2026-05-14","airline":"TP","stops":0})";

TEST(Json, ErrorsNameSourceAndKeyPathHostileDocumentsFailCleanly) {
    const std::string book =
        std::string(R"({"origin":"JFK","updated":"2026-05-01","toOrlando":{},)") +
        R"("fromOrlando":{"2026-05-02":[{"airline":"B6","price":"cheap","stops":0}]},)" +
        R"("deals":[)" + kDeal + "]}";
    EXPECT_EQ(errorOf<FareBook>(book),
              "flights/JFK.json: fromOrlando.2026-05-02[0].price: expected a number");

    using testing::replaced;
    EXPECT_EQ(errorOf<std::vector<Deal>>(std::string("[") + kDeal + "," +
                                         replaced(kDeal, R"("city":"Lisbon",)", "") + "]"),
              "flights/JFK.json: [1].city: required key is missing");
    const auto stops = [](const std::string& to) {
        return errorOf<Deal>(replaced(kDeal, R"("stops":0)", to));
    };
    EXPECT_EQ(stops(R"("stops":1.5)"), "flights/JFK.json: stops: expected an integer");

    std::string truncated = kDeal;
    truncated.resize(truncated.size() / 2);
    EXPECT_NE(errorOf<Deal>(truncated).find("flights/JFK.json: not valid JSON"), std::string::npos);
    EXPECT_NE(
        errorOf<Deal>(std::string(100000, '[') + std::string(100000, ']')).find("not valid JSON"),
        std::string::npos);
    EXPECT_NE(errorOf<Deal>(replaced(kDeal, "199", "1e999")), "decoded");
    EXPECT_NE(stops(R"("stops":99999999999999999999)"), "decoded");
    EXPECT_EQ(stops(R"("stops":4294967296)"), "flights/JFK.json: stops: integer out of range");
    // Trailing garbage after a complete document.
    EXPECT_NE(errorOf<Deal>(std::string(kDeal) + "}"), "decoded");
}

// A case-keyed form's name and payload, and null read as absent, are the
// decoders' tests' (trip search, calendars); here what they never meet.
TEST(Json, ACaseKeyedFormHasExactlyOneKey) {
    auto doc = json::parse(R"({"two":{"a":{},"b":{}},"none":{}})", "t");
    for (const char* key : {"two", "none"}) {
        try {
            doc.root().field(key).caseKeyed();
            ADD_FAILURE() << key;
        } catch (const json::DecodeError& e) {
            EXPECT_EQ(e.message, "Invalid number of keys found, expected one.") << key;
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
    auto doc = json::parse(R"({"a":[1,{"b":[[],{"c":"x"}]},[]],"d":{"":5,"e.f":[null]}})", "t");
    const json::Value root = doc.root();
    // Kept after the values they came from are gone: a Value needs only its document.
    std::optional<json::Value> c;
    {
        const json::Value inner = element(root.field("a"), 1);
        c = element(inner.field("b"), 1).field("c");
    }
    EXPECT_EQ(root.field("d").field("").path(), "d.");
    EXPECT_EQ(element(root.field("d").field("e.f"), 0).path(), "d.e.f[0]");
    try {
        c->number();
        FAIL();
    } catch (const json::DecodeError& e) {
        EXPECT_EQ(std::string(e.what()), "t: a[1].b[1].c: expected a number");
    }
}

// A record of every kind of field the lists are asked to carry.
struct Probe {
    int count = 0;
    std::optional<double> fee;
    std::vector<double> rates;
    double lat = 0;
    std::string name;
};

}  // namespace

template <>
struct json::Fields<Probe> {
    static constexpr auto list = std::tuple{
        json::field("count", &Probe::count, json::AtLeast{1, "expected 1 or more"}),
        json::field("fee", &Probe::fee, json::amount),
        json::field("rates", &Probe::rates,
                    json::each(json::price,
                               [](const json::Value& v, const std::vector<double>& rates) {
                                   if (rates.empty()) v.fail("expected at least one rate");
                               })),
        json::rule([](const json::Value& v, Probe& p) {
            if (static_cast<std::size_t>(p.count) > p.rates.size()) {
                v.field("count").fail("more than the rates");
            }
        }),
        json::field("lat", &Probe::lat, json::asDouble),
        json::field("name", &Probe::name)};
};

namespace {

void decode(const json::Value& v, Probe& out) {
    json::decodeFields(v, out);
}

TEST(JsonFields, OptionalFieldsLeftOutAndChecksFailAtTheirFieldsInListOrder) {
    const char* text = R"({"count":2,"rates":[1,2.5],"lat":40.0,"name":"x"})";
    auto doc = json::parse(text, "t");
    Probe p;
    p.fee = 5;  // a value from before must not survive a document without one
    decode(doc.root(), p);
    EXPECT_FALSE(p.fee.has_value());
    EXPECT_EQ(json::encodeFields(p).dump(), text);
    EXPECT_EQ(json::decodeDocument<Probe>(
                  R"({"count":2,"fee":null,"rates":[1,2],"lat":0,"name":""})", "t")
                  .fee,
              std::nullopt);

    const auto probe = [](const std::string& fields) {
        return errorOf<Probe>("{" + fields + R"(,"name":"x"})", "t");
    };
    EXPECT_EQ(probe(R"("count":0,"rates":[1],"lat":0)"), "t: count: expected 1 or more");
    EXPECT_EQ(probe(R"("count":1,"fee":-1,"rates":[1],"lat":0)"),
              "t: fee: expected an amount of 0 or more");
    EXPECT_EQ(probe(R"("count":1,"rates":[1,0],"lat":0)"), "t: rates[1]: expected a price above 0");
    EXPECT_EQ(probe(R"("count":1,"rates":[],"lat":0)"), "t: rates: expected at least one rate");
    EXPECT_EQ(probe(R"("count":1,"rates":{},"lat":0)"), "t: rates: expected an array");
    // The rule runs where it stands: before `lat` is found missing.
    EXPECT_EQ(probe(R"("count":3,"rates":[1,2])"), "t: count: more than the rates");
    EXPECT_EQ(probe(R"("count":2,"rates":[1,2])"), "t: lat: required key is missing");
}

}  // namespace
}  // namespace tripkit

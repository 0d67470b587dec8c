#include "tripkit/fares.h"

#include <gtest/gtest.h>

#include <random>

#include "tripkit/tests/test_data.h"

namespace tripkit {
namespace {

const Day kToday = Day::fromCivil(2026, 11, 23);

Deal deal(const std::string& dest, double price, std::optional<int> seenDaysAgo,
          int departIn = 30) {
    Deal d;
    d.destination = dest;
    d.city = dest + " city";
    d.country = "Somewhere";
    d.price = price;
    d.depart = kToday + departIn;
    d.returnDay = kToday + departIn + 7;
    d.airline = "B6";
    if (seenDaysAgo) d.seen = kToday - *seenDaysAgo;
    return d;
}

FareBook book(const std::string& origin, std::vector<Deal> deals, std::string updated = "") {
    FareBook b;
    b.origin = origin;
    b.updated = updated.empty() ? kToday.text() : updated;
    b.deals = std::move(deals);
    return b;
}

TEST(FaresDeals, FreshBeatsCheapTiesGoToTheMainAirportAgeAndDepartureLimits) {
    auto out =
        Fares::deals({book("JFK", {deal("LIS", 300, 1), deal("CUN", 250, 0), deal("SJU", 99, 2)}),
                      book("EWR", {deal("LIS", 150, 5), deal("CUN", 250, 0), deal("SJU", 98, 3)})},
                     kToday);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0].destination, "SJU");  // both fresh: strictly cheaper wins
    EXPECT_EQ(out[0].origin, "EWR");
    EXPECT_EQ(out[1].destination, "CUN");  // equal: the main airport keeps it
    EXPECT_EQ(out[1].origin, "JFK");
    EXPECT_EQ(out[2].destination, "LIS");  // cheaper but stale loses to fresh
    EXPECT_EQ(out[2].price, 300);

    // A fresh newcomer replaces a stale entry even when dearer; two stale
    // ones compare by price.
    out = Fares::deals({book("JFK", {deal("LIS", 100, 6), deal("BCN", 200, 5)}),
                        book("EWR", {deal("LIS", 400, 0), deal("BCN", 199, 4)})},
                       kToday);
    EXPECT_EQ(out[0].destination, "BCN");
    EXPECT_EQ(out[0].origin, "EWR");
    EXPECT_EQ(out[1].price, 400);
    // Within one file the earlier deal wins a tie.
    auto first = deal("LIS", 100, 0);
    first.airline = "TP";
    out = Fares::deals({book("JFK", {first, deal("LIS", 100, 0)})}, kToday);
    EXPECT_EQ(out.at(0).airline, "TP");
    // Equal prices sort by code.
    out = Fares::deals(
        {book("JFK", {deal("LIS", 199, 0), deal("CUN", 199, 0), deal("AUA", 250, 0)})}, kToday);
    EXPECT_EQ(out[0].destination + out[1].destination + out[2].destination, "CUNLISAUA");

    // Too old or out of the departure horizon.
    out = Fares::deals(
        {book("JFK", {deal("AAA", 1, 8), deal("BBB", 2, 7), deal("CCC", 3, 0, -1),
                      deal("DDD", 4, 0, 330), deal("EEE", 5, 0, 331), deal("FFF", 6, 0, 0)})},
        kToday);
    std::vector<std::string> codes;
    for (const Deal& d : out) codes.push_back(d.destination);
    EXPECT_EQ(codes, (std::vector<std::string>{"BBB", "DDD", "FFF"}));
    EXPECT_TRUE(out[0].isStale(kToday));

    // Without "seen" the file's day applies and is carried into the result.
    out = Fares::deals({book("JFK", {deal("LIS", 199, std::nullopt)})}, kToday);
    EXPECT_EQ(out.at(0).seen, kToday);
    EXPECT_FALSE(out.at(0).isStale(kToday));
    out =
        Fares::deals({book("JFK", {deal("LIS", 199, std::nullopt)}, (kToday - 8).text())}, kToday);
    EXPECT_TRUE(out.empty());
    // An unreadable "updated" keeps the deal with no observation day.
    out = Fares::deals({book("JFK", {deal("LIS", 199, std::nullopt)}, "yesterday")}, kToday);
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].seen, std::nullopt);
    // A deal's own origin is kept.
    auto own = deal("LIS", 199, 0);
    own.origin = "LGA";
    EXPECT_EQ(Fares::deals({book("JFK", {own})}, kToday).at(0).origin, "LGA");
}

Airport airport(std::string code, double lat, double lon) {
    return Airport{std::move(code), "", "", "", lat, lon};
}

TEST(FaresQuote, FiltersAgeAndEstimates) {
    const Airport jfk = airport("JFK", 40.6398, -73.7789);
    const Airport mco = airport("MCO", 28.4294, -81.3090);
    const Day day = kToday + 20;
    FareBook b = book("JFK", {});
    b.toOrlando[day.text()] = {
        FareOption{"NK", 59, 1, std::nullopt, std::nullopt},
        FareOption{"B6", 89, 0, std::string("https://x"), kToday - 1},
        FareOption{"DL", 79, 0, std::nullopt, kToday - 8},  // too old
    };
    QuoteRequest r;
    r.day = day;
    r.demand = 1.0;
    r.home = jfk;
    r.orlando = mco;
    r.today = kToday;
    FareQuote q = Fares::quote(b, r);
    EXPECT_FALSE(q.estimated);
    EXPECT_EQ(q.price, 59);
    EXPECT_EQ(q.airline, "NK");
    EXPECT_EQ(q.spread, 0);

    r.filter.nonstopOnly = true;
    q = Fares::quote(b, r);
    EXPECT_EQ(q.price, 89);
    EXPECT_EQ(q.link, "https://x");
    // Without today the age test is skipped.
    r.today.reset();
    EXPECT_EQ(Fares::quote(b, r).price, 79);
    r.today = kToday;

    r.filter = FareFilter{{"UA"}, {}, false};
    q = Fares::quote(b, r);
    EXPECT_TRUE(q.estimated);
    EXPECT_EQ(q.price, Fares::typicalOneWay(jfk, mco, 1.0));
    // The other direction has no fares at all, and no book means an estimate.
    r.filter = {};
    r.leg = QuoteRequest::Leg::fromOrlando;
    EXPECT_TRUE(Fares::quote(b, r).estimated);
    r.leg = QuoteRequest::Leg::toOrlando;
    EXPECT_TRUE(Fares::quote(r).estimated);
    // A fare seen after today was never seen: it is left out.
    b.toOrlando[day.text()][0].seen = kToday + 1;
    EXPECT_EQ(Fares::quote(b, r).price, 89);
    EXPECT_EQ(Fares::seenAfter(b, kToday), 1);

    // JFK-MCO is ~944 miles: base 70 + 113.3 = 183.3; demand 1 → 1.3 × 183.3 × 0.5 = 119.1.
    EXPECT_EQ(Fares::typicalOneWay(jfk, mco, 1.0), 119);
    // Short hops use the 120 floor: (0 × 0.45 + 0.85) × 120 × 0.5 = 51.
    EXPECT_EQ(Fares::typicalOneWay(mco, mco, 0.0), 51);

    r.filter = FareFilter{{"UA"}, {}, false};
    r.calibration.byDay[day] = {1.5, 22};
    q = Fares::quote(b, r);
    EXPECT_EQ(q.price, 179);  // round(119 × 1.5 = 178.5): halves away from zero
    EXPECT_EQ(q.spread, 22);
}

TEST(FaresJson, ImpossibleFaresLeftOutAndTheFastReaderReadsAsTheTree) {
    // Each row: a deal and whether a real fare could look like it.
    const std::vector<std::pair<std::string, bool>> deals = {
        {R"("price": 199, "stops": 0, "depart": "2026-12-01", "return": "2026-12-08")", true},
        {R"("price": 199, "stops": 0, "depart": "2026-12-01", "return": "2026-12-01")", true},
        {R"("price": 0, "stops": 0, "depart": "2026-12-01")", false},
        {R"("price": -5, "stops": 0, "depart": "2026-12-01")", false},
        {R"("price": 199, "stops": -1, "depart": "2026-12-01")", false},
        {R"("price": 199, "stops": 1, "depart": "2026-12-08", "return": "2026-12-01")", false},
    };
    for (const auto& [fields, possible] : deals) {
        const std::string file = R"({"origin": "JFK", "updated": "2026-11-23", "toOrlando": {},
            "fromOrlando": {}, "deals": [{"destination": "LIS", "city": "Lisbon",
            "country": "Portugal", "airline": "TP", )" +
                                 fields + "}]}";
        const FareBook b = json::decodeDocument<FareBook>(file, "JFK.json");
        EXPECT_EQ(b.deals.size(), possible ? 1u : 0u) << fields;
        EXPECT_EQ(b.impossible, possible ? 0 : 1) << fields;
    }
    const FareBook b = json::decodeDocument<FareBook>(R"({"origin": "JFK", "updated": "2026-11-23",
        "toOrlando": {"2026-12-01": [{"airline": "B6", "price": 0, "stops": 0},
                                     {"airline": "B6", "price": 89, "stops": 0}]},
        "fromOrlando": {"2026-12-08": [{"airline": "NK", "price": 49, "stops": -2}]},
        "deals": []})",
                                                      "JFK.json");
    EXPECT_EQ(b.impossible, 2);
    EXPECT_EQ(b.toOrlando.at("2026-12-01").size(), 1u);
    EXPECT_TRUE(b.fromOrlando.at("2026-12-08").empty());

    // A deal seen after today (or from a file dated after it) is not listed.
    FareBook future = book("JFK", {deal("LIS", 99, -1), deal("CUN", 120, 0)});
    EXPECT_EQ(Fares::seenAfter(future, kToday), 1);
    EXPECT_EQ(Fares::deals({future}, kToday).size(), 1u);
    future = book("JFK", {deal("LIS", 99, std::nullopt)}, (kToday + 2).text());
    EXPECT_TRUE(Fares::deals({future}, kToday).empty());

    FareBook plain = book("JFK", {deal("LIS", 199.5, 1), deal("CUN", 0, std::nullopt)});
    plain.deals[1].returnDay.reset();
    plain.deals[0].advisory = "Exercise increased caution";
    plain.toOrlando["2026-12-01"] = {FareOption{"NK", 59, 1, std::string("l"), kToday},
                                     FareOption{"B6", 89, -1, {}, {}}};
    plain.fromOrlando["2026-12-08"] = {};
    const std::string text = encode(plain).dump();
    const std::string deal = R"({"destination":"LIS","city":"Lisbon","country":"Portugal",)"
                             R"("airline":"TP","price":199,"stops":0,"depart":"2026-12-01")";
    const std::string head =
        R"({"origin":"JFK","updated":"2026-11-23","toOrlando":{},"fromOrlando":{},"deals":[)";
    struct Case {
        std::string text;
        bool fast;  // read by the On-Demand reader
    };
    const std::vector<Case> cases = {
        {text, true},
        {head + deal + R"(,"return":null,"link":null}]})", true},
        {head + deal + R"(,"origin":"EWR","seen":"2026-11-20"},)" + deal + "}]}", true},
        {head + deal + R"(,"stops":1}]})", false},   // a key twice
        {head + deal + R"(,"note":"x"}]})", false},  // a key unknown
        {head + R"({"city":"Lisbon"}]})", false},    // keys missing
        {head + deal + R"(,"airline":7}]})", false},
        {head + testing::replaced(deal, "199", "99999999999999999999999") + "}]}", false},
        {head + testing::replaced(deal, "199", "0.0000001" + std::string(110, '0') + "178") + "}]}",
         false},  // rounds otherwise on the two paths
        {head + testing::replaced(deal, R"("stops":0)", R"("stops":2.0)") + "}]}", false},
        {R"({"updated":"2026-11-23","origin":"JFK","toOrlando":{},"fromOrlando":{},"deals":[]})",
         false},
        {head + "]}", true},
        {head + "]} {}", false},
        {head + "]", false},
    };
    for (const Case& c : cases) {
        testing::expectReadAsTheTree<FareBook>(c.text, c.fast, std::equal_to<FareBook>{});
    }
}

// Random books over few destinations and days, so that every rule of the merge
// meets its ties: narrowed reads must merge, and report, as the whole books.
TEST(FaresNeeds, NarrowedBooksMergeAsTheWholeOnes) {
    std::mt19937 random(20261124);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const auto randomBook = [&](const std::string& origin) {
        std::vector<Deal> deals;
        for (int i = pick(12); i > 0; --i) {
            Deal d = deal(std::string(1, static_cast<char>('A' + pick(4))) + "XX", 90 + pick(4) * 5,
                          pick(5) ? std::optional<int>(pick(10) - 1) : std::nullopt,
                          pick(6) ? 1 + pick(40) : 329 + pick(3));
            d.airline = pick(2) ? "B6" : "TP";
            deals.push_back(d);
        }
        FareBook b = book(origin, deals, (kToday - pick(10) + 1).text());
        for (int i = pick(4); i > 0; --i) {
            b.toOrlando[(kToday + pick(3)).text()].push_back(
                FareOption{"NK", 59.0 + pick(9), 0, {}, kToday - pick(4) + 1});
        }
        b.fromOrlando[(kToday + 9).text()] = {FareOption{"B6", 69, 1, {}, {}}};
        return b;
    };
    for (int round = 0; round < 300; ++round) {
        const std::vector<FareBook> whole = {randomBook("JFK"), randomBook("EWR")};
        for (const FareNeeds& needs :
             {FareNeeds{kToday, false, true}, FareNeeds{kToday, true, false}, FareNeeds{kToday}}) {
            std::vector<FareBook> narrowed;
            for (const FareBook& b : whole) {
                const std::string text = encode(b).dump();
                const simdjson::padded_string padded(text);
                FareBook tree = json::decodeTree<FareBook>(text, "f.json");
                narrow(tree, needs);
                for (std::size_t window : {std::size_t{1}, json::fast::kWindowBytes}) {
                    EXPECT_EQ(
                        FareBook::readFast(padded.data(), padded.size(), window, false, needs),
                        tree);
                }
                // A file the fast reader leaves to the DOM decoder is narrowed all the same.
                EXPECT_EQ(json::decodePadded<FareBook>(simdjson::padded_string(testing::replaced(
                                                           text, "origin", "orig\\u0069n")),
                                                       "f.json", {}, needs),
                          tree);
                EXPECT_EQ(Fares::seenAfter(tree, kToday), Fares::seenAfter(b, kToday));
                EXPECT_EQ(tree.toOrlando.empty(), !needs.orlando || b.toOrlando.empty());
                narrowed.push_back(std::move(tree));
            }
            EXPECT_EQ(Fares::deals(narrowed, kToday),
                      needs.deals ? Fares::deals(whole, kToday) : std::vector<Deal>{});
        }
    }
}

TEST(Fares, AirlinesNamesAndTheJsonForms) {
    FareBook b = book("JFK", {});
    b.toOrlando["2026-12-01"] = {FareOption{"NK", 1, 0, {}, {}}, FareOption{"B6", 1, 0, {}, {}}};
    b.fromOrlando["bad day"] = {FareOption{"AA", 1, 0, {}, {}}, FareOption{"NK", 1, 0, {}, {}}};
    EXPECT_EQ(Fares::airlines(&b), (std::vector<std::string>{"AA", "B6", "NK"}));
    EXPECT_TRUE(Fares::airlines(nullptr).empty());
    EXPECT_EQ(Airline::display("ZZ"), "ZZ");  // an unknown code shows as itself

    b = book("JFK", {deal("LIS", 199.5, 1), deal("CUN", 250, std::nullopt)});
    b.deals[1].returnDay.reset();
    b.deals[1].advisory = "Exercise increased caution";
    b.deals[1].link = "https://example.com/?a=1&b=2";
    b.toOrlando["2026-12-01"] = {FareOption{"NK", 59, 1, std::string("l"), kToday}};
    const std::string text = encode(b).dump();
    EXPECT_EQ(json::decodeDocument<FareBook>(text, "b.json"), b);
    EXPECT_NE(text.find(R"("return":")"), std::string::npos);  // stored as "return"
    EXPECT_EQ(encode(b.deals[1]).count("return"), 0u);         // absent, not null
    FareFilter f{{"B6", "AA"}, {"NK"}, true};
    EXPECT_EQ(json::decodeDocument<FareFilter>(encode(f).dump(), "f.json"), f);
}

}  // namespace
}  // namespace tripkit

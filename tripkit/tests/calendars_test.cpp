#include "tripkit/calendars.h"

#include <gtest/gtest.h>

#include "tripkit/tests/test_data.h"

#include <limits>

namespace tripkit {
namespace {

const Day kToday = Day::fromCivil(2026, 11, 20);

std::string readData(const std::string& name) {
    return testing::readFile(std::string(TRIPKIT_TEST_DATA) + "/calendars/" + name);
}

RoundTrip trip(const std::string& to, int departIn, double price,
               std::optional<int> seenDaysAgo = 0, const std::string& origin = "JFK") {
    RoundTrip t;
    t.origin = origin;
    t.destination = to;
    t.depart = kToday + departIn;
    t.returnDay = kToday + departIn + 7;
    t.price = price;
    t.airline = "B6";
    if (seenDaysAgo) t.seen = kToday - *seenDaysAgo;
    return t;
}

// A file of 2026-11-20 from JFK whose LIS route holds `cells`.
std::string lisFile(const std::string& cells) {
    return R"({"origin":"JFK","updated":"2026-11-20","routes":{"LIS":{)" + cells + "}}}";
}

CalendarBook book(const std::string& origin, const std::vector<RoundTrip>& trips) {
    return CalendarBook::init(origin, kToday.text(), trips);
}

std::vector<int> departures(const std::vector<RoundTrip>& trips) {
    std::vector<int> out;
    for (const RoundTrip& t : trips) out.push_back(static_cast<int>(t.depart - kToday));
    return out;
}

TEST(CalendarBook, DecodesCellsSkipsTheBadOnesAndEncodesPositionally) {
    const auto b = json::decodeDocument<CalendarBook>(readData("JFK.json"), "calendars/JFK.json");
    EXPECT_EQ(b.updatedDay(), kToday);
    EXPECT_TRUE(b.routes.at("CUN").empty());
    std::vector<std::string> lis;  // "depart price airline stops return seen", "-" for none
    for (const RoundTrip& t : b.trips("LIS")) {
        EXPECT_EQ(t.origin + t.destination, "JFKLIS");
        lis.push_back(t.depart.text() + " " + json::number(t.price).dump() + " " + t.airline + " " +
                      std::to_string(t.stops) + " " + (t.returnDay ? t.returnDay->text() : "-") +
                      " " + (t.seen ? t.seen->text() : "-"));
    }
    // File order; price 0, a negative price and an undated cell are dropped.
    // A null or missing return is one way, a missing, null or unreadable seen
    // is the file's day, an unreadable return is one way; 2.0 stops is 2.
    EXPECT_EQ(lis, (std::vector<std::string>{
                       "2026-12-01 412 TP 0 2026-12-09 2026-11-19",
                       "2026-12-02 399.5 UA 1 - 2026-11-18",
                       "2026-12-03 420 TP 0 - 2026-11-20",
                       "2026-12-04 430 TP 0 2026-12-12 2026-11-20",
                       "2026-12-05 440 TP 0 - 2026-11-20",
                       "2026-12-09 450 TP 2 - 2026-11-20",
                   }));
    EXPECT_EQ(b.trips("LIS")[0].nights(), 8);
    EXPECT_EQ(b.trips("LIS")[1].nights(), std::nullopt);
    EXPECT_EQ(b.skippedImpossible, 2);  // the two prices; an undated cell is not counted

    // Written back positionally: the encoder is the decoder's inverse.
    const json::Json j = encode(b);
    EXPECT_EQ(j["routes"]["LIS"]["2026-12-02"].dump(), R"([399.5,"UA",1,null,"2026-11-18"])");
    EXPECT_EQ(json::decodeDocument<CalendarBook>(j.dump(), "again"), b);

    // Built from values: no seen leaves the array after a null back.
    RoundTrip oneWay = trip("CUN", 3, 219, std::nullopt, "EWR");
    oneWay.returnDay.reset();
    const CalendarBook made = CalendarBook::init("EWR", "later", {oneWay});
    const json::Json encoded = encode(made);
    EXPECT_EQ(encoded["routes"]["CUN"][(kToday + 3).text()].dump(), R"([219,"B6",0,null])");
    EXPECT_EQ(json::decodeDocument<CalendarBook>(encoded.dump(), "again"), made);

    auto t = trip("LIS", 10, 412, 0);
    t.link = "https://example.com/book";
    EXPECT_EQ(json::decodeDocument<RoundTrip>(encode(t).dump(), "t"), t);
}

TEST(CalendarBook, MalformedFilesFailWhole) {
    // clang-format off
    const std::vector<std::pair<std::string, std::string>> cases = {
        {R"("2026-12-02":[412,"TP"])", "2026-12-02: expected 3 to 5 elements [price, airline, stops, back, seen], found 2"},
        {R"("2026-12-02":["412","TP",0])", "2026-12-02[0]: expected a number"},
        {R"("2026-12-02":[412,"TP",0.5])", "2026-12-02[2]: expected an integer"},
        {R"("2026-12-02":[412,"TP",0,20261209])", "2026-12-02[3]: expected a string"},
        {R"("2026-12-02":{"price":412})", "2026-12-02: expected an array"},
        // A bad cell type fails even where the day or price would drop the cell.
        {R"("someday":[0,"TP","x"])", "someday[2]: expected an integer"},
    };
    // clang-format on
    for (const auto& [cell, message] : cases) {
        EXPECT_EQ(testing::decodeError<CalendarBook>(
                      lisFile(R"("2026-12-01":[412,"TP",0],)" + cell), "c.json"),
                  "c.json: routes.LIS." + message);
    }
    EXPECT_EQ(testing::decodeError<CalendarBook>(
                  R"({"origin":"JFK","updated":"2026-11-20","routes":{"LIS":[]}})", "c.json"),
              "c.json: routes.LIS: expected an object");
}

TEST(CalendarBook, CellsWithImpossibleValuesAreSkippedAndCounted) {
    // The file is of 2026-11-20; each cell leaves on 2026-12-01.
    const std::vector<std::pair<const char*, bool>> cases = {
        // the cell, kept
        {R"([412,"TP",0,"2026-12-09","2026-11-20"])", true},
        {R"([412,"TP",0,"2026-12-01"])", true},                // back the same day
        {R"([412,"TP",0,"2026-11-30"])", false},               // back before leaving
        {R"([412,"TP",-1])", false},                           // negative stops
        {R"([412,"TP",0,null,"2026-11-21"])", false},          // seen after the file's day
        {R"([412,"TP",0,"2026-02-30","2026-11-20"])", false},  // rolls to March: before leaving
        {R"([412,"TP",0,"soon","later"])", true},              // one way, seen on the file's day
    };
    for (const auto& [cell, kept] : cases) {
        const auto b = json::decodeDocument<CalendarBook>(
            lisFile(std::string(R"("2026-12-01":)") + cell), "calendars/JFK.json");
        EXPECT_EQ(b.tripCount(), kept ? 1u : 0u) << cell;
        EXPECT_EQ(b.skippedImpossible, kept ? 0 : 1) << cell;
    }
    // Without a readable file day, no seen day can be told to be late, and a
    // cell without its own seen has none.
    const auto undated = json::decodeDocument<CalendarBook>(
        R"({"origin":"JFK","updated":"?","routes":{"LIS":{"2026-12-01":[412,"TP",0,null,"2030-01-01"],)"
        R"("2026-12-02":[219,"UA",0]}}})",
        "c");
    EXPECT_EQ(undated.tripCount(), 2u);
    EXPECT_EQ(undated.trips("LIS").at(1).seen, std::nullopt);
}

TEST(CalendarBook, DayTextsReadAsDayParseReadsThem) {
    // The calendar's quick day reader against Day::parse, over month runs,
    // month changes, rolled-over and broken days.
    const std::vector<std::string> days = {
        "2026-12-01", "2026-12-31", "2026-12-32", "2026-12-00",       "2027-01-01",
        "2026-02-30", "2026-13-01", "2026-00-10", "20261201",         "2026-1-05",
        "0001-01-01", "2026-12-1x", "+026-12-01", "2026-12-01T10:00", "2026-12-02"};
    // One file, so that each text is read after the one before it.
    std::string cells;
    std::vector<Day> expected;
    for (const std::string& day : days) {
        if (!cells.empty()) cells += ",";
        cells += R"(")" + day + R"(":[100,"TP",0,")" + day + R"("])";
        if (auto parsed = Day::parse(day)) expected.push_back(*parsed);
    }
    const auto b = json::decodeDocument<CalendarBook>(lisFile(cells), "c");
    std::vector<Day> departs, backs;
    for (const RoundTrip& t : b.trips("LIS")) {
        departs.push_back(t.depart);
        backs.push_back(t.returnDay.value_or(Day{}));
    }
    EXPECT_EQ(departs, expected);
    EXPECT_EQ(backs, expected);
}

TEST(CalendarBook, TheFastReaderReadsPlainFilesAsTheTreeDoesAndLeavesTheRestToIt) {
    // decodeDocument tries the On-Demand reader first; whatever it takes or
    // leaves, the outcome must be the DOM decoder's, value or message.
    const std::string cells =
        R"({"2026-12-01":[412,"TP",0,"2026-12-09","2026-11-19"],"2026-12-02":[0,"TP",0]})";
    const std::string lis = R"({"origin":"JFK","updated":"2026-11-20","routes":{"LIS":)";
    const std::string cell = lis + R"({"2026-12-01":)";
    // The text, and whether the On-Demand reader reads it.
    // clang-format off
    const std::vector<std::pair<std::string, bool>> cases = {
        {readData("JFK.json"), false},  // 2.0 stops: only the tree reads a whole number so
        {encode(json::decodeDocument<CalendarBook>(readData("JFK.json"), "c")).dump(), true},
        {lis + cells + "}}", true},
        {R"({"origin":"J\u0046K","updated":"2026-11-20","routes":{"L\u0049S":)" + cells + "}}", true},
        {lis + cells + R"(,"LIS":)" + cells + "}}", true},
        {R"({"routes":{"LIS":)" + cells + R"(},"origin":"JFK","updated":"2026-11-20"})", false},
        {R"({"origin":"JFK","updated":"2026-11-20","routes":{},"note":1})", false},
        {R"({"origin":"JFK","origin":"EWR","updated":"2026-11-20","routes":{}})", false},
        {R"({"origin":"JFK","updated":"2026-11-20","routes":{}} [])", false},
        {cell + R"([412,"TP",0]})", false},
        {lisFile(R"("2026-12-01":[1e999,"TP",0])"), false},
        {lisFile(R"("2026-12-01":[18446744073709551615,"TP",0])"), false},
        {lisFile(R"("2026-12-01":[412,"TP",99999999999])"), false},
    };
    // clang-format on
    const auto same = [](const CalendarBook& a, const CalendarBook& b) {
        return a.routes == b.routes && a.airlines == b.airlines &&
               a.skippedImpossible == b.skippedImpossible && a.origin == b.origin &&
               a.updated == b.updated;
    };
    for (const auto& [text, fast] : cases)
        testing::expectReadAsTheTree<CalendarBook>(text, fast, same);
}

TEST(FareCalendar, MergeKeepsTheCheapestAndTiesGoToTheFirstBook) {
    auto jfk = book("JFK", {trip("LIS", 10, 400), trip("LIS", 11, 300), trip("CUN", 10, 250)});
    auto ewr = book("EWR", {trip("LIS", 10, 400), trip("LIS", 11, 299.99), trip("CUN", 10, 251),
                            trip("SJU", 12, std::numeric_limits<double>::infinity())});
    const FareCalendar c({jfk, ewr});
    EXPECT_EQ(c.trip("LIS", kToday + 10)->origin, "JFK");  // equal price: the first book stays
    EXPECT_EQ(c.trip("LIS", kToday + 11)->origin, "EWR");  // strictly lower replaces
    EXPECT_FALSE(c.byDestination.contains("SJU"));         // an infinite price is no fare

    // Order of the books decides ties only.
    const FareCalendar reversed({ewr, jfk});
    EXPECT_EQ(reversed.trip("LIS", kToday + 10)->origin, "EWR");

    CalendarBook empty = book("JFK", {});
    empty.routes["LIS"];
    EXPECT_TRUE(FareCalendar({empty, book("EWR", {})}).isEmpty());
}

TEST(FareCalendar, OneBookNamingADayTwiceKeepsItsCheaperCellFirstMet) {
    // 2026-11-31 rolls over to December 1, which the file names again.
    const auto b = json::decodeDocument<CalendarBook>(
        R"({"origin":"JFK","updated":"2026-11-20","routes":{"LIS":{)"
        R"("2026-12-02":[300,"TP",0],"2026-11-31":[250,"TP",0],"2026-12-01":[250,"UA",0],)"
        R"("2026-11-30":[260,"TP",0]},"CUN":{"2026-12-01":[90,"AA",0]}}})",
        "c");
    const FareCalendar c({b});
    EXPECT_EQ(departures(c.trips("LIS", kToday)), (std::vector<int>{10, 11, 12}));
    EXPECT_EQ(c.trip("LIS", kToday + 11)->airline, "TP");  // equal price: the first cell stays

    // A later book adding days before, between and after the held ones.
    const FareCalendar merged(
        {b, book("EWR", {trip("LIS", 9, 500), trip("LIS", 11, 249), trip("LIS", 30, 100)})});
    std::vector<std::string> seen;
    for (const RoundTrip& t : merged.trips("LIS", kToday)) {
        seen.push_back(std::to_string(t.depart - kToday) + t.origin);
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"9EWR", "10JFK", "11EWR", "12JFK", "30EWR"}));
}

TEST(FareCalendar, UsableTripsLeaveWithinTheHorizonAndWereSeenThisWeek) {
    const FareCalendar c(
        {book("JFK", {trip("LIS", 331, 1), trip("LIS", -1, 2), trip("LIS", 0, 3),
                      trip("LIS", 330, 4), trip("LIS", 5, 5, 8), trip("LIS", 6, 6, 7),
                      trip("LIS", 7, 7, std::nullopt), trip("CUN", 5, 8), trip("BCN", 0, 9)})});
    EXPECT_EQ(departures(c.trips("LIS", kToday)), (std::vector<int>{0, 6, 7, 330}));

    // All destinations, by departure day; on one day by destination code.
    std::vector<std::string> all;
    for (const RoundTrip& t : c.allTrips(kToday)) {
        all.push_back(t.destination + std::to_string(t.depart - kToday));
    }
    EXPECT_EQ(all, (std::vector<std::string>{"BCN0", "LIS0", "CUN5", "LIS6", "LIS7", "LIS330"}));

    // A day later the edges move with it.
    EXPECT_EQ(departures(c.trips("LIS", kToday + 1)), (std::vector<int>{7, 330, 331}));
}

TEST(FareCalendar, CheapestOfEachMonth) {
    // kToday is 2026-11-20: days 11 and 41 are December 1 and 31, 42 is January 1.
    const FareCalendar c(
        {book("JFK",
              {trip("LIS", 0, 500), trip("LIS", 5, 450), trip("LIS", 11, 300), trip("LIS", 41, 300),
               trip("LIS", 50, 200), trip("LIS", 42, 250), trip("LIS", 60, 100, 9)})});
    const auto months = c.months("LIS", kToday);
    ASSERT_EQ(months.size(), 3u);
    EXPECT_EQ(months[0].first, (YearMonth{2026, 11}));
    EXPECT_EQ(months[0].second.price, 450);
    EXPECT_EQ(months[1].first, (YearMonth{2026, 12}));
    EXPECT_EQ(months[1].second.depart, kToday + 11);  // a tie keeps the earlier day
    EXPECT_EQ(months[2].first, (YearMonth{2027, 1}));
    EXPECT_EQ(months[2].second.price, 200);  // the later, too-old 100 is not usable
}

TEST(FareCalendar, BestPrefersFreshTripsAndCheapestKeepsTheWholeStayInside) {
    const auto fresh3 = trip("LIS", 10, 400, 3);
    const auto stale4 = trip("LIS", 11, 200, 4);
    const auto stale5 = trip("LIS", 12, 150, 5);
    const auto unseen = trip("LIS", 13, 390, std::nullopt);

    // A cheaper stale trip loses to a fresh one; one without seen is fresh.
    EXPECT_EQ(FareCalendar::best({stale4, fresh3, stale5}, kToday, false), fresh3);
    EXPECT_EQ(FareCalendar::best({stale4, fresh3, unseen}, kToday, true), unseen);
    // Only stale trips: nothing when fresh ones are required, else the cheapest.
    EXPECT_EQ(FareCalendar::best({stale4, stale5}, kToday, true), std::nullopt);
    EXPECT_EQ(FareCalendar::best({stale4, stale5}, kToday, false), stale5);

    // Equal prices: the earlier departure, then the first in the list.
    auto later = trip("LIS", 20, 300);
    auto earlier = trip("LIS", 15, 300);
    EXPECT_EQ(FareCalendar::best({later, earlier}, kToday, true), earlier);
    auto sameDay = trip("LIS", 15, 300, 0, "EWR");
    EXPECT_EQ(FareCalendar::best({sameDay, earlier}, kToday, true)->origin, "EWR");
    EXPECT_EQ(FareCalendar::best({earlier, sameDay}, kToday, true)->origin, "JFK");

    auto oneWay = trip("LIS", 20, 100);
    oneWay.returnDay.reset();
    const FareCalendar c({book("JFK", {trip("LIS", 10, 150), trip("LIS", 14, 200), oneWay,
                                       trip("LIS", 30, 90, 5), trip("LIS", -2, 10)})});
    // Out of range: nothing given, so the cheapest fresh one of all.
    EXPECT_EQ(c.cheapest("LIS", std::nullopt, kToday, false)->price, 100);
    // The 10th returns on the 17th: inside 10..17, outside 10..16.
    const DayRange to17(kToday + 10, kToday + 17);
    EXPECT_EQ(c.cheapest("LIS", to17, kToday, false)->price, 150);
    const DayRange to16(kToday + 10, kToday + 16);
    EXPECT_EQ(c.cheapest("LIS", to16, kToday, false), std::nullopt);
    // A one-way trip only has to leave inside.
    EXPECT_EQ(c.cheapest("LIS", DayRange(kToday + 20, kToday + 20), kToday, false)->price, 100);
    // Only a stale trip in range: kept unless fresh ones are required.
    const DayRange late(kToday + 25, kToday + 40);
    EXPECT_EQ(c.cheapest("LIS", late, kToday, false)->price, 90);
    EXPECT_EQ(c.cheapest("LIS", late, kToday, true), std::nullopt);
    // A trip that left before today is never offered, even inside the range.
    EXPECT_EQ(c.cheapest("LIS", DayRange(kToday - 5, kToday + 5), kToday, false), std::nullopt);
}

}  // namespace
}  // namespace tripkit

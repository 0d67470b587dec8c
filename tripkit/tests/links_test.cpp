#include "tripkit/links.h"

#include <map>

#include <gtest/gtest.h>

using namespace tripkit;

namespace {

const std::string kFlights = "https://flights.example";
const Day kDepart = Day::fromCivil(2027, 5, 14);
const Day kReturn = Day::fromCivil(2027, 5, 21);

TEST(Links, PercentEncodingAndFlightSearchPaths) {
    EXPECT_EQ(Links::percentEncoded("San Juan & Cancún a-b.c_d~e"),
              "San%20Juan%20%26%20Canc%C3%BAn%20a-b.c_d~e");
    // Every byte outside the kept set is encoded, and in upper-case hex.
    std::string all;
    for (int c = 1; c < 256; ++c) all += static_cast<char>(c);
    const std::string encoded = Links::percentEncoded(all);
    EXPECT_EQ(encoded.size(), Links::unreserved.size() + 3 * (255 - Links::unreserved.size()));
    EXPECT_NE(encoded.find("%2B%2C-.%2F0"), std::string::npos);
    EXPECT_NE(encoded.find("%FF"), std::string::npos);

    EXPECT_EQ(Links::flightPath("JFK", Day::fromCivil(2027, 1, 3), "MCO", std::nullopt, {}),
              "/search/JFK0301MCO1");
    EXPECT_EQ(Links::flightPath("EWR", kDepart, "MCO", kReturn, {2, 0, 1}),
              "/search/EWR1405MCO2105201");

    EXPECT_EQ(Links::flightSearch(kFlights + "/", "JFK", kDepart, "LIS", kReturn, {}, ""),
              kFlights + "/search/JFK1405LIS21051");
    EXPECT_EQ(Links::flightSearch(kFlights, "JFK", kDepart, "LIS", kReturn, {}, "12345"),
              kFlights + "/search/JFK1405LIS21051?marker=12345");
}

TEST(Links, FareFileLinksTheMarkerAndOnlySafeHttpsLinks) {
    // No scheme and no slash, a leading slash, a full address.
    // Paths go under the partner; a full address only when it is https on the
    // partner's own host. Path parts are percent-encoded, escapes kept.
    // The link, and the address used (nothing: not used, and no marker).
    // clang-format off
    const std::vector<std::pair<std::string, std::optional<std::string>>> links = {
        {"search/JFK1405LIS21051", kFlights + "/search/JFK1405LIS21051?marker=7"},
        {"/search/X?a=1", kFlights + "/search/X?a=1&marker=7"},
        {"/search/a b/\"<é>%41?q=x y#f", kFlights + "/search/a%20b/%22%3C%C3%A9%3E%41?q=x%20y&marker=7#f"},
        {"HTTPS://Flights.Example/s?a=1", "HTTPS://Flights.Example/s?a=1&marker=7"},
        {"https://flights.example:443/s/x y", "https://flights.example:443/s/x%20y?marker=7"},
        {"https://other.example/s?a=1", std::nullopt},
        {"https://flights.example.evil.example/s", std::nullopt},
        {"https://flights.example@evil.example/s", std::nullopt},
        {"//evil.example/s", std::nullopt},
        {"file:///etc/passwd", std::nullopt},
    };
    // clang-format on
    for (const auto& [link, url] : links)
        EXPECT_EQ(Links::fareLink(link, kFlights, "7"), url) << link;

    // An existing marker is replaced, others are kept in order; the fragment stays last.
    EXPECT_EQ(Links::withMarker("https://a.example/s?marker=old&x=1&marker=2&y#top", "new"),
              "https://a.example/s?x=1&y&marker=new#top");
    EXPECT_EQ(Links::withMarker("https://a.example/s?marker=old", ""),
              "https://a.example/s?marker=old");
    EXPECT_EQ(Links::withMarker("https://a.example/s?markers=1", "9"),
              "https://a.example/s?markers=1&marker=9");

    Deal deal;
    deal.destination = "LIS";
    deal.origin = "JFK";
    deal.depart = kDepart;
    deal.link = "search/JFK1405LIS2105?marker=0";
    EXPECT_EQ(Links::flightSearch(deal, kFlights, "42"),
              kFlights + "/search/JFK1405LIS2105?marker=42");
    // Another host's link gives way to the search built from the deal, whose
    // codes are encoded as path parts, as is the marker.
    deal.link = "https://evil.example/search";
    deal.destination = "L/S";
    deal.returnDay = kReturn;
    EXPECT_EQ(Links::flightSearch(deal, kFlights, "m 1"),
              kFlights + "/search/JFK1405L%2FS21051?marker=m%201");

    for (const char* url : {"https://www.aviasales.com/search/JFK1405LIS1?marker=1",
                            "HTTPS://a.example", "https://a.example:8443/x#top"}) {
        EXPECT_TRUE(Links::isSafeLink(url)) << url;
    }
    for (const char* url :
         {"http://a.example/", "https://", "https://user@a.example/", "https://a.example:99999999/",
          "https://a_b.example/", "https://[::1]/", "https://a.example/x y",
          "https://a.example\\@evil.example/", "https://a.example/caf\xC3\xA9",
          "https://a.example/\"onclick", "javascript:alert(1)"}) {
        EXPECT_FALSE(Links::isSafeLink(url)) << url;
    }
    EXPECT_EQ(Links::hostOf("https://WWW.Example:1/x"), "www.example");
    EXPECT_EQ(Links::hostOf("http://www.example/"), std::nullopt);
}

TEST(Links, RedirectsTargetsAndPartnerSettingsByName) {
    const Links::Program hotels{"4115", "101"};
    const std::string target = "https://hotels.example/go?CityName=San Juan&x=1";
    const std::string encodedTarget =
        "https%3A%2F%2Fhotels.example%2Fgo%3FCityName%3DSan%20Juan%26x%3D1";
    EXPECT_EQ(
        Links::redirect("https://r.example", "12345", "678", hotels, target),
        "https://r.example/r?marker=12345&trs=678&p=4115&u=" + encodedTarget + "&campaign_id=101");
    // An empty or unfilled project is left out; "$" alone is a value.
    for (const std::string project : {"", "$(RW_PROJECT)"}) {
        EXPECT_EQ(Links::redirect("https://r.example", "12345", project, hotels, "t"),
                  "https://r.example/r?marker=12345&p=4115&u=t&campaign_id=101")
            << project;
    }
    EXPECT_EQ(Links::redirect("https://r.example", "", "$x", hotels, "t"),
              "https://r.example/r?marker=&trs=%24x&p=4115&u=t&campaign_id=101");

    EXPECT_EQ(Links::hotelSearch("https://h.example", "Orlando", kDepart, kReturn,
                                 {{2, {4, 9}}, {1, {}}}),
              "https://h.example/go/hotel/search/Destination/2027-05-14/2027-05-21?CityName=Orlando"
              "&NumRooms=2&NumAdult-Room1=2&NumChild-Room1=2&Room1-Child1Age=4&Room1-Child2Age=9"
              "&NumAdult-Room2=1&NumChild-Room2=0");
    EXPECT_EQ(Links::shopSearch("https://s.example", "rain jacket & hat", "tag-20"),
              "https://s.example/s?k=rain%20jacket%20%26%20hat&tag=tag-20");

    std::map<std::string, std::string> env;
    auto setting = [&](const char* name) -> const char* {
        auto it = env.find(name);
        return it == env.end() ? nullptr : it->second.c_str();
    };
    PartnerConfig c = PartnerConfig::read(setting);
    EXPECT_EQ(c.marker, "");
    EXPECT_FALSE(c.hotelProgram || c.carProgram || c.toursProgram);

    // clang-format off
    env = {{"RWTravelpayoutsMarker", "12345"}, {"RWTravelpayoutsProject", "$(RW_PROJECT)"},
           {"RWHotelProgram", "4115"}, {"RWHotelCampaign", "101"},
           {"RWCarProgram", "2222"},  // no campaign: no programme
           {"RWToursProgram", "3333"}, {"RWToursCampaign", "303"}, {"RWShopTag", "rw-20"}};
    // clang-format on
    c = PartnerConfig::read(setting);
    EXPECT_EQ(c.marker, "12345");
    EXPECT_EQ(c.project, "");
    EXPECT_EQ(c.hotelProgram, (Links::Program{"4115", "101"}));
    EXPECT_FALSE(c.carProgram);
    EXPECT_FALSE(c.toursProgram);  // RWToursLinks is not on
    env["RWToursLinks"] = "YES";
    EXPECT_EQ(PartnerConfig::read(setting).toursProgram, (Links::Program{"3333", "303"}));

    // The links use them: hotels through the redirect, cars plain, tours only
    // with a programme; a host configured without https gives no link at all.
    c.hosts.redirect = "https://r.example";
    c.hosts.cars = "https://c.example";
    EXPECT_TRUE(c.carLink("MCO", kDepart, kReturn)
                    ->starts_with("https://c.example/go/car/search/Airport/2027-05-14/2027-05-21"
                                  "?PickUpLoc=MCO"));
    EXPECT_TRUE(c.hotelLink("Orlando", kDepart, kReturn, {{}})
                    ->starts_with("https://r.example/r?marker=12345&p=4115&u=https%3A%2F%2Fwww."));
    EXPECT_FALSE(c.toursLink("Orlando"));
    c.toursProgram = Links::Program{"3333", "303"};
    EXPECT_TRUE(c.toursLink("Orlando")->ends_with(
        "&p=3333&u=https%3A%2F%2Fwww.getyourguide.com%2Fs%2F%3Fq%3DOrlando&campaign_id=303"));
    EXPECT_TRUE(c.shopLink("socks")->ends_with("/s?k=socks&tag=rw-20"));
    c.hosts.shop = "http://s.example";
    EXPECT_FALSE(c.shopLink("socks"));
}

}  // namespace

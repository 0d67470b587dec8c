// Partner links: flight searches, the redirect service's links to the hotel,
// car and tours partners, and shop searches. Pure text building; the
// partners' base addresses and keys come in as configuration.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/fares.h"

namespace tripkit {

struct Links {
    // One programme of the redirect service.
    struct Program {
        std::string id;        // "p"
        std::string campaign;  // "campaign_id"
        friend bool operator==(const Program&, const Program&) = default;
    };

    // Who a flight search is for: adults (and children of 12 or more),
    // children aged 2 to 11, infants under 2.
    struct Passengers {
        int adults = 1;
        int children = 0;
        int infants = 0;
    };

    // One hotel room: its adults and the ages of its children.
    struct Room {
        int adults = 2;
        std::vector<int> childAges;
    };

    // The partners' base addresses (scheme and host, no trailing slash).
    struct Hosts {
        std::string flights = "https://www.aviasales.com";
        std::string redirect = "https://tp.media";
        std::string hotels = "https://www.expedia.com";
        std::string cars = "https://www.expedia.com";
        std::string tours = "https://www.getyourguide.com";
        std::string shop = "https://www.amazon.com";
    };

    // Characters a query value keeps as they are; every other byte of its
    // UTF-8 text becomes %XX.
    static constexpr std::string_view unreserved =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~";
    static std::string percentEncoded(std::string_view text);

    // "/search/JFK1405LIS2105" + the passengers ("1", or adults, children and
    // infants when there are children or infants: "211").
    static std::string flightPath(std::string_view origin, Day depart, std::string_view destination,
                                  std::optional<Day> returnDay, const Passengers& passengers);
    // A flight search on the partner at `base`, with the marker when it is set.
    static std::string flightSearch(std::string_view base, std::string_view origin, Day depart,
                                    std::string_view destination, std::optional<Day> returnDay,
                                    const Passengers& passengers, std::string_view marker);
    // The flight search of a merged deal, for one adult: the fare file's own
    // link when fareLink accepts it, otherwise a search built from the deal.
    static std::string flightSearch(const Deal& deal, std::string_view base,
                                    std::string_view marker);
    // A link from a fare file, with the marker: a path (with or without its
    // leading "/") is put under `base`; a full address is kept only when it
    // is https on the host of `base`. Path parts are percent-encoded.
    // Nothing for any other address (another host, not https), which must
    // not get the marker.
    static std::optional<std::string> fareLink(std::string_view link, std::string_view base,
                                               std::string_view marker);
    // The one check every link the application opens passes: "https://", a
    // host of letters, digits, dots and hyphens (and a port), no user part,
    // and nothing a browser could read another way (spaces, controls,
    // backslashes, quotes, non-ASCII bytes).
    static bool isSafeLink(std::string_view url);
    // The lower-cased host of a link isSafeLink accepts; nothing otherwise.
    static std::optional<std::string> hostOf(std::string_view url);

    // `url` with its "marker" query item replaced by `marker` (unchanged when
    // the marker is empty).
    static std::string withMarker(std::string_view url, std::string_view marker);

    // base + "/r?marker=..&trs=..&p=..&u=..&campaign_id=.."; "trs" only for a
    // project that is set (not empty, not an unfilled "$(...)" variable).
    static std::string redirect(std::string_view base, std::string_view marker,
                                std::string_view project, const Program& program,
                                std::string_view target);

    // Partner targets (to be wrapped by `redirect`).
    static std::string hotelSearch(std::string_view base, std::string_view city, Day checkIn,
                                   Day checkOut, const std::vector<Room>& rooms);
    static std::string carSearch(std::string_view base, std::string_view airport, Day pickUp,
                                 Day dropOff);
    static std::string toursSearch(std::string_view base, std::string_view place);
    // The shop's search for a packing item's phrase, with the associate tag
    // when one is set.
    static std::string shopSearch(std::string_view base, std::string_view phrase,
                                  std::string_view tag);
};

// The partner settings the application is configured with.
struct PartnerConfig {
    std::string marker;
    std::string project;
    std::optional<Links::Program> hotelProgram;
    std::optional<Links::Program> carProgram;
    std::optional<Links::Program> toursProgram;  // only when RWToursLinks is on
    std::string shopTag;
    Links::Hosts hosts;

    // Reads the settings by their names (RWTravelpayoutsMarker,
    // RWTravelpayoutsProject, RWHotelProgram + RWHotelCampaign, RWCarProgram +
    // RWCarCampaign, RWToursLinks + RWToursProgram + RWToursCampaign,
    // RWShopTag) through `setting`, which gives nothing for a name that is not
    // set (std::getenv fits). Empty values and unfilled "$(...)" build
    // variables count as not set; a programme needs both its keys.
    using Setting = std::function<const char*(const char* name)>;
    static PartnerConfig read(const Setting& setting);

    // The partner links with these settings. Hotels and cars without a
    // programme get their plain search, without the redirect; tours links are
    // offered only with a tours programme. Each is nothing when it fails
    // Links::isSafeLink (a host configured without https).
    std::optional<std::string> flightSearch(const Deal& deal) const;
    std::optional<std::string> hotelLink(std::string_view city, Day checkIn, Day checkOut,
                                         const std::vector<Links::Room>& rooms) const;
    std::optional<std::string> carLink(std::string_view airport, Day pickUp, Day dropOff) const;
    std::optional<std::string> toursLink(std::string_view place) const;
    std::optional<std::string> shopLink(std::string_view phrase) const;
};

}  // namespace tripkit

#include "tripkit/universal_guide.h"

#include <algorithm>
#include <cmath>

#include "tripkit/json_fields.h"
#include "tripkit/resources.h"

namespace tripkit {

ParkResort UniversalGuide::Hotel::resort() const {
    ParkResort r;
    r.id = id;
    r.name = name;
    r.tier = tier;
    r.room = room;
    r.roomEs = roomEs;
    r.low = from;
    r.high = from;
    r.getAround = getAround;
    r.getAroundEs = getAroundEs;
    r.parking = 0;
    r.benefits = benefits;
    return r;
}

const UniversalGuide& UniversalGuide::shipped() {
    static const UniversalGuide guide = resources::decodeShipped<UniversalGuide>(
        resources::universalGuide, "universal-guide.json");
    return guide;
}

const UniversalGuide::Hotel* UniversalGuide::hotelWithId(std::string_view id) const {
    for (const Hotel& h : hotels) {
        if (h.id == id) return &h;
    }
    return nullptr;
}

double UniversalGuide::oneDayPrice(std::string_view park) const {
    for (const ParkPrice& p : tickets.oneDay) {
        if (p.park == park) return p.price;
    }
    return 0;
}

UniversalGuide::GuestTicket UniversalGuide::guestTicket(int parkDays, bool withEpicUniverse,
                                                        bool parkToPark) const {
    const int days = std::max(parkDays, 1);
    GuestTicket out;
    if (days == 3 && withEpicUniverse) {
        out.base = tickets.threeDayOneParkEach.published;
        if (parkToPark) {
            out.parkToPark =
                tickets.threeDayParkToPark.published - tickets.threeDayOneParkEach.published;
        }
    } else if (withEpicUniverse) {
        out.base = oneDayPrice(epicUniversePark) + (days - 1) * oneDayPrice(studiosPark);
    } else {
        out.base = days * oneDayPrice(studiosPark);
    }
    return out;
}

std::optional<ParkGuide::HotelStay> UniversalGuide::hotelStay(const Hotel& hotel, Day checkIn,
                                                             int nights, int rooms) const {
    if (checkIn < coverage.from || checkIn + nights > coverage.to) return std::nullopt;
    return HotelStay{hotel.from * nights * rooms, false};
}

namespace {

bool fixedBusyDate(Day day) {
    const int month = day.month();
    const int dayOfMonth = day.dayOfMonth();
    return (month == 1 && dayOfMonth <= 2) || (month == 12 && dayOfMonth >= 20);
}

}  // namespace

bool UniversalGuide::busyDate(Day day) { return fixedBusyDate(day) || isInHolidayWindow(day); }

UniversalGuide::Days UniversalGuide::buildDays(const UniversalGuide& guide) {
    Days t;
    t.first = guide.coverage.from;
    const Day last = std::min(guide.coverage.to, t.first + (Days::maxDays - 1));
    t.busy = holidayWindowDays(t.first, last);
    for (std::size_t i = 0; i < t.busy.size(); ++i) {
        if (fixedBusyDate(t.first + static_cast<std::int64_t>(i))) t.busy[i] = true;
    }
    return t;
}

const UniversalGuide::Days& UniversalGuide::days() const {
    return m_days.get([this] { return buildDays(*this); });
}

bool UniversalGuide::isBusy(Day day) const {
    const Days& t = days();
    if (day >= t.first && day - t.first < static_cast<std::int64_t>(t.busy.size())) {
        return t.busy[static_cast<std::size_t>(day - t.first)];
    }
    return busyDate(day);
}

std::vector<ParkResort> UniversalGuide::parkResorts() const {
    std::vector<ParkResort> out;
    out.reserve(hotels.size());
    for (const Hotel& h : hotels) out.push_back(h.resort());
    return out;
}

ParkGuide::TicketTotals UniversalGuide::ticketTotals(int parkDays, const Party& party,
                                                     Day firstParkDay,
                                                     bool hopper, bool withEpicUniverse) const {
    const GuestTicket ticket = guestTicket(parkDays, withEpicUniverse, hopper);
    const int guests = party.universalTicketed();
    const double withTax = 1 + taxes.tickets;
    const Day lastParkDay = firstParkDay + (std::max(parkDays, 1) - 1);
    return {std::round(ticket.base * guests * withTax),
            std::round(ticket.parkToPark * guests * withTax),
            firstParkDay < coverage.from || lastParkDay > coverage.to};
}

bool UniversalGuide::expressIncluded(const ParkResort& resort) const {
    return std::find(express.begin(), express.end(), resort.id) != express.end();
}

double UniversalGuide::transportTotal(TransportChoice choice, const Party& party, int nights,
                                      const ParkResort&) const {
    const int seated = party.seats();
    const int vehicles = seated < 7 ? 1 : 2;
    switch (choice) {
        // The guide publishes no shuttle fare: a shuttle is priced as a
        // rideshare.
        case TransportChoice::mearsStandard:
        case TransportChoice::mearsExpress:
        case TransportChoice::rideshare: {
            const Span& car = seated < 5 ? transport.rideshare : transport.rideshareXL;
            return std::round(2 * car.midpoint() * vehicles);
        }
        case TransportChoice::carService:
            return std::round(2 * transport.carService.midpoint() * vehicles);
        case TransportChoice::rentalCar:
            // Hotel parking is not in the guide.
            return std::round(transport.rentalPerDay.midpoint() * checkedSum(nights, 1));
        case TransportChoice::ownCar: return 0;
    }
    return 0;
}

std::optional<double> UniversalGuide::nightlyRate(const ParkResort& resort, Day night) const {
    const Hotel* hotel = hotelWithId(resort.id);
    if (!hotel || night < coverage.from || night > coverage.to) return std::nullopt;
    return hotel->from;
}

std::optional<ParkGuide::HotelStay> UniversalGuide::hotelStay(const ParkResort& resort,
                                                             Day checkIn, int nights,
                                                             int rooms) const {
    const Hotel* hotel = hotelWithId(resort.id);
    if (!hotel) return std::nullopt;
    return hotelStay(*hotel, checkIn, nights, rooms);
}

// --- decoding and encoding ---

template <>
struct json::Fields<UniversalGuide::Coverage> {
    using T = UniversalGuide::Coverage;
    static constexpr auto list =
        std::tuple{json::field("from", &T::from), json::field("to", &T::to)};
    static void check(const json::Value& v, T& c) {
        if (c.to < c.from) v.field("to").fail("is before from");
    }
};

template <>
struct json::Fields<UniversalGuide::Taxes> {
    using T = UniversalGuide::Taxes;
    static constexpr auto list = std::tuple{json::field("tickets", &T::tickets, json::amount),
                                            json::field("hotel", &T::hotel, json::amount)};
};

template <>
struct json::Fields<UniversalGuide::Hotel> {
    using T = UniversalGuide::Hotel;
    static constexpr auto list = std::tuple{json::field("id", &T::id),
                                            json::field("name", &T::name),
                                            json::field("tier", &T::tier),
                                            json::field("from", &T::from, json::price),
                                            json::field("room", &T::room),
                                            json::field("roomEs", &T::roomEs),
                                            json::field("getAround", &T::getAround),
                                            json::field("getAroundEs", &T::getAroundEs),
                                            json::field("benefits", &T::benefits)};
};

template <>
struct json::Fields<UniversalGuide::ParkPrice> {
    using T = UniversalGuide::ParkPrice;
    static constexpr auto list =
        std::tuple{json::field("park", &T::park), json::field("price", &T::price, json::amount)};
};

template <>
struct json::Fields<UniversalGuide::Published> {
    using T = UniversalGuide::Published;
    static constexpr auto list = std::tuple{json::field("published", &T::published, json::amount)};
};

template <>
struct json::Fields<UniversalGuide::Tickets> {
    using T = UniversalGuide::Tickets;
    static constexpr auto list =
        std::tuple{json::field("oneDay", &T::oneDay),
                   json::field("threeDayOneParkEach", &T::threeDayOneParkEach),
                   json::field("threeDayParkToPark", &T::threeDayParkToPark)};
    // The park-to-park add-on is the difference of the two.
    static void check(const json::Value& v, T& t) {
        if (t.threeDayParkToPark.published < t.threeDayOneParkEach.published) {
            v.field("threeDayParkToPark").fail("costs less than threeDayOneParkEach");
        }
    }
};

template <>
struct json::Fields<UniversalGuide::Shuttle> {
    using T = UniversalGuide::Shuttle;
    static constexpr auto list =
        std::tuple{json::field("name", &T::name), json::field("phone", &T::phone),
                   json::field("published", &T::published)};
};

template <>
struct json::Fields<UniversalGuide::Transport> {
    using T = UniversalGuide::Transport;
    static constexpr auto list = std::tuple{
        json::field("shuttle", &T::shuttle), json::field("rideshare", &T::rideshare),
        json::field("rideshareXL", &T::rideshareXL), json::field("carService", &T::carService),
        json::field("rentalPerDay", &T::rentalPerDay)};
};

template <>
struct json::Fields<UniversalGuide> {
    using T = UniversalGuide;
    static constexpr auto list =
        std::tuple{json::field("asOf", &T::asOf),
                   json::field("coverage", &T::coverage),
                   json::field("sources", &T::sources),
                   json::field("taxes", &T::taxes),
                   json::field("hotels", &T::hotels),
                   json::field("tickets", &T::tickets),
                   json::field("express", &T::express),
                   json::rule([](const json::Value& v, T& g) {
                       v.field("express").forEach([&](const json::Value& id) {
                           if (!g.hotelWithId(id.stringView()))
                               id.fail("no hotel with id " + id.string());
                       });
                   }),
                   json::field("transport", &T::transport)};
};

TRIPKIT_JSON_CODEC(UniversalGuide::Coverage)
TRIPKIT_JSON_CODEC(UniversalGuide::Taxes)
TRIPKIT_JSON_CODEC(UniversalGuide::Hotel)
TRIPKIT_JSON_CODEC(UniversalGuide::ParkPrice)
TRIPKIT_JSON_CODEC(UniversalGuide::Published)
TRIPKIT_JSON_CODEC(UniversalGuide::Tickets)
TRIPKIT_JSON_CODEC(UniversalGuide::Shuttle)
TRIPKIT_JSON_CODEC(UniversalGuide::Transport)

void decode(const json::Value& v, UniversalGuide& out) {
    out.m_days.drop();  // rebuilt from the new fields
    json::decodeFields(v, out);
}

TRIPKIT_JSON_ENCODER(UniversalGuide)

}  // namespace tripkit

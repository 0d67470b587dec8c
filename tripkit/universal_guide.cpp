#include "tripkit/universal_guide.h"

#include <algorithm>
#include <cmath>

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

void decode(const json::Value& v, UniversalGuide::Coverage& out) {
    out.from = v.get<Day>("from");
    out.to = v.get<Day>("to");
    if (out.to < out.from) v.field("to").fail("is before from");
}

void decode(const json::Value& v, UniversalGuide::Taxes& out) {
    out.tickets = readAmount(v, "tickets");
    out.hotel = readAmount(v, "hotel");
}

void decode(const json::Value& v, UniversalGuide::Hotel& out) {
    out.id = v.get<std::string>("id");
    out.name = v.get<std::string>("name");
    out.tier = v.get<Tier>("tier");
    out.from = readPositiveAmount(v, "from");
    out.room = v.get<std::string>("room");
    out.roomEs = v.get<std::string>("roomEs");
    out.getAround = v.get<std::string>("getAround");
    out.getAroundEs = v.get<std::string>("getAroundEs");
    out.benefits = v.get<std::vector<std::string>>("benefits");
}

void decode(const json::Value& v, UniversalGuide::ParkPrice& out) {
    out.park = v.get<std::string>("park");
    out.price = readAmount(v, "price");
}

void decode(const json::Value& v, UniversalGuide::Published& out) {
    out.published = readAmount(v, "published");
}

void decode(const json::Value& v, UniversalGuide::Tickets& out) {
    out.oneDay = v.get<std::vector<UniversalGuide::ParkPrice>>("oneDay");
    out.threeDayOneParkEach = v.get<UniversalGuide::Published>("threeDayOneParkEach");
    out.threeDayParkToPark = v.get<UniversalGuide::Published>("threeDayParkToPark");
    // The park-to-park add-on is the difference of the two.
    if (out.threeDayParkToPark.published < out.threeDayOneParkEach.published) {
        v.field("threeDayParkToPark").fail("costs less than threeDayOneParkEach");
    }
}

void decode(const json::Value& v, UniversalGuide::Shuttle& out) {
    out.name = v.get<std::string>("name");
    out.phone = v.get<std::string>("phone");
    out.published = v.get<bool>("published");
}

void decode(const json::Value& v, UniversalGuide::Transport& out) {
    out.shuttle = v.get<UniversalGuide::Shuttle>("shuttle");
    out.rideshare = v.get<UniversalGuide::Span>("rideshare");
    out.rideshareXL = v.get<UniversalGuide::Span>("rideshareXL");
    out.carService = v.get<UniversalGuide::Span>("carService");
    out.rentalPerDay = v.get<UniversalGuide::Span>("rentalPerDay");
}

void decode(const json::Value& v, UniversalGuide& out) {
    out.asOf = v.get<std::string>("asOf");
    out.coverage = v.get<UniversalGuide::Coverage>("coverage");
    out.sources = v.get<std::vector<UniversalGuide::Source>>("sources");
    out.taxes = v.get<UniversalGuide::Taxes>("taxes");
    out.hotels = v.get<std::vector<UniversalGuide::Hotel>>("hotels");
    out.tickets = v.get<UniversalGuide::Tickets>("tickets");
    out.express = v.get<std::vector<std::string>>("express");
    v.field("express").forEach([&](const json::Value& id) {
        if (!out.hotelWithId(id.stringView())) id.fail("no hotel with id " + id.string());
    });
    out.transport = v.get<UniversalGuide::Transport>("transport");
    out.m_days.drop();
}

json::Json encode(const UniversalGuide::Coverage& c) {
    json::Json out = json::Json::object();
    out["from"] = encode(c.from);
    out["to"] = encode(c.to);
    return out;
}

json::Json encode(const UniversalGuide::Taxes& t) {
    json::Json out = json::Json::object();
    out["tickets"] = json::number(t.tickets);
    out["hotel"] = json::number(t.hotel);
    return out;
}

json::Json encode(const UniversalGuide::Hotel& h) {
    json::Json out = json::Json::object();
    out["id"] = h.id;
    out["name"] = h.name;
    out["tier"] = encode(h.tier);
    out["from"] = json::number(h.from);
    out["room"] = h.room;
    out["roomEs"] = h.roomEs;
    out["getAround"] = h.getAround;
    out["getAroundEs"] = h.getAroundEs;
    out["benefits"] = json::array(h.benefits);
    return out;
}

json::Json encode(const UniversalGuide::ParkPrice& p) {
    json::Json out = json::Json::object();
    out["park"] = p.park;
    out["price"] = json::number(p.price);
    return out;
}

json::Json encode(const UniversalGuide::Published& p) {
    json::Json out = json::Json::object();
    out["published"] = json::number(p.published);
    return out;
}

json::Json encode(const UniversalGuide::Tickets& t) {
    json::Json out = json::Json::object();
    out["oneDay"] = json::array(t.oneDay);
    out["threeDayOneParkEach"] = encode(t.threeDayOneParkEach);
    out["threeDayParkToPark"] = encode(t.threeDayParkToPark);
    return out;
}

json::Json encode(const UniversalGuide::Shuttle& s) {
    json::Json out = json::Json::object();
    out["name"] = s.name;
    out["phone"] = s.phone;
    out["published"] = s.published;
    return out;
}

json::Json encode(const UniversalGuide::Transport& t) {
    json::Json out = json::Json::object();
    out["shuttle"] = encode(t.shuttle);
    out["rideshare"] = encode(t.rideshare);
    out["rideshareXL"] = encode(t.rideshareXL);
    out["carService"] = encode(t.carService);
    out["rentalPerDay"] = encode(t.rentalPerDay);
    return out;
}

json::Json encode(const UniversalGuide& g) {
    json::Json out = json::Json::object();
    out["asOf"] = g.asOf;
    out["coverage"] = encode(g.coverage);
    out["sources"] = json::array(g.sources);
    out["taxes"] = encode(g.taxes);
    out["hotels"] = json::array(g.hotels);
    out["tickets"] = encode(g.tickets);
    out["express"] = json::array(g.express);
    out["transport"] = encode(g.transport);
    return out;
}

}  // namespace tripkit

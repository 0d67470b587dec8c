#include "tripkit/links.h"

#include <algorithm>
#include <cctype>

#include <fmt/format.h>

namespace tripkit {

namespace {

// A build variable that was never filled in, like "$(RW_MARKER)".
bool isUnfilled(std::string_view value) { return value.starts_with("$("); }

std::string_view withoutTrailingSlash(std::string_view base) {
    while (base.ends_with('/')) base.remove_suffix(1);
    return base;
}

std::string dayMonth(Day d) { return fmt::format("{:02d}{:02d}", d.dayOfMonth(), d.month()); }

}  // namespace

std::string Links::percentEncoded(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        if (unreserved.find(c) != std::string_view::npos) {
            out += c;
        } else {
            out += fmt::format("%{:02X}", static_cast<unsigned char>(c));
        }
    }
    return out;
}

std::string Links::flightPath(std::string_view origin, Day depart, std::string_view destination,
                              std::optional<Day> returnDay, const Passengers& passengers) {
    std::string path = "/search/";
    path += origin;
    path += dayMonth(depart);
    path += destination;
    if (returnDay) path += dayMonth(*returnDay);
    path += std::to_string(passengers.adults);
    if (passengers.children > 0 || passengers.infants > 0) {
        path += std::to_string(passengers.children);
        path += std::to_string(passengers.infants);
    }
    return path;
}

std::string Links::flightSearch(std::string_view base, std::string_view origin, Day depart,
                                std::string_view destination, std::optional<Day> returnDay,
                                const Passengers& passengers, std::string_view marker) {
    std::string url(withoutTrailingSlash(base));
    url += flightPath(origin, depart, destination, returnDay, passengers);
    return withMarker(url, marker);
}

std::string Links::flightSearch(const Deal& deal, std::string_view base, std::string_view marker) {
    if (deal.link) return fareLink(*deal.link, base, marker);
    return flightSearch(base, deal.origin.value_or(""), deal.depart, deal.destination,
                        deal.returnDay, Passengers{}, marker);
}

std::string Links::fareLink(std::string_view link, std::string_view base, std::string_view marker) {
    if (link.starts_with("http")) return withMarker(link, marker);
    std::string url(withoutTrailingSlash(base));
    if (!link.starts_with('/')) url += '/';
    url += link;
    return withMarker(url, marker);
}

std::string Links::withMarker(std::string_view url, std::string_view marker) {
    if (marker.empty()) return std::string(url);
    std::string_view fragment;
    if (auto hash = url.find('#'); hash != std::string_view::npos) {
        fragment = url.substr(hash);
        url = url.substr(0, hash);
    }
    std::string_view query;
    if (auto mark = url.find('?'); mark != std::string_view::npos) {
        query = url.substr(mark + 1);
        url = url.substr(0, mark);
    }
    std::string out(url);
    char separator = '?';
    while (!query.empty()) {
        const std::size_t amp = query.find('&');
        const std::string_view item = query.substr(0, amp);
        query = amp == std::string_view::npos ? std::string_view() : query.substr(amp + 1);
        if (item.empty() || item.substr(0, item.find('=')) == "marker") continue;
        out += separator;
        out += item;
        separator = '&';
    }
    out += separator;
    out += "marker=";
    out += percentEncoded(marker);
    out += fragment;
    return out;
}

std::string Links::redirect(std::string_view base, std::string_view marker,
                            std::string_view project, const Program& program,
                            std::string_view target) {
    std::string out(withoutTrailingSlash(base));
    out += "/r?marker=" + percentEncoded(marker);
    if (!project.empty() && !isUnfilled(project)) out += "&trs=" + percentEncoded(project);
    out += "&p=" + percentEncoded(program.id);
    out += "&u=" + percentEncoded(target);
    out += "&campaign_id=" + percentEncoded(program.campaign);
    return out;
}

std::string Links::hotelSearch(std::string_view base, std::string_view city, Day checkIn,
                               Day checkOut, const std::vector<Room>& rooms) {
    std::string out(withoutTrailingSlash(base));
    out += "/go/hotel/search/Destination/" + checkIn.text() + "/" + checkOut.text();
    out += "?CityName=" + percentEncoded(city);
    out += "&NumRooms=" + std::to_string(rooms.size());
    for (std::size_t n = 1; n <= rooms.size(); ++n) {
        const Room& room = rooms[n - 1];
        out += fmt::format("&NumAdult-Room{}={}", n, room.adults);
        out += fmt::format("&NumChild-Room{}={}", n, room.childAges.size());
        for (std::size_t m = 1; m <= room.childAges.size(); ++m) {
            out += fmt::format("&Room{}-Child{}Age={}", n, m, room.childAges[m - 1]);
        }
    }
    return out;
}

std::string Links::carSearch(std::string_view base, std::string_view airport, Day pickUp,
                             Day dropOff) {
    std::string out(withoutTrailingSlash(base));
    out += "/go/car/search/Airport/" + pickUp.text() + "/" + dropOff.text();
    out += "?PickUpLoc=" + percentEncoded(airport);
    out += "&PickUpTime=1000AM&DropOffTime=1000AM";
    return out;
}

std::string Links::toursSearch(std::string_view base, std::string_view place) {
    return std::string(withoutTrailingSlash(base)) + "/s/?q=" + percentEncoded(place);
}

std::string Links::shopSearch(std::string_view base, std::string_view phrase,
                              std::string_view tag) {
    std::string out(withoutTrailingSlash(base));
    out += "/s?k=" + percentEncoded(phrase);
    if (!tag.empty()) out += "&tag=" + percentEncoded(tag);
    return out;
}

PartnerConfig PartnerConfig::read(const Setting& setting) {
    auto value = [&](const char* name) -> std::string {
        const char* text = setting(name);
        if (text == nullptr || isUnfilled(text)) return "";
        return text;
    };
    auto program = [&](const char* id, const char* campaign) -> std::optional<Links::Program> {
        Links::Program p{value(id), value(campaign)};
        if (p.id.empty() || p.campaign.empty()) return std::nullopt;
        return p;
    };
    auto isOn = [&](const char* name) {
        std::string text = value(name);
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        return text == "1" || text == "yes" || text == "true";
    };

    PartnerConfig c;
    c.marker = value("RWTravelpayoutsMarker");
    c.project = value("RWTravelpayoutsProject");
    c.hotelProgram = program("RWHotelProgram", "RWHotelCampaign");
    c.carProgram = program("RWCarProgram", "RWCarCampaign");
    if (isOn("RWToursLinks")) c.toursProgram = program("RWToursProgram", "RWToursCampaign");
    c.shopTag = value("RWShopTag");
    return c;
}

namespace {

std::string viaRedirect(const PartnerConfig& c, const std::optional<Links::Program>& program,
                        std::string target) {
    if (!program) return target;
    return Links::redirect(c.hosts.redirect, c.marker, c.project, *program, target);
}

}  // namespace

std::string PartnerConfig::flightSearch(const Deal& deal) const {
    return Links::flightSearch(deal, hosts.flights, marker);
}

std::string PartnerConfig::hotelLink(std::string_view city, Day checkIn, Day checkOut,
                                     const std::vector<Links::Room>& rooms) const {
    return viaRedirect(*this, hotelProgram,
                       Links::hotelSearch(hosts.hotels, city, checkIn, checkOut, rooms));
}

std::string PartnerConfig::carLink(std::string_view airport, Day pickUp, Day dropOff) const {
    return viaRedirect(*this, carProgram, Links::carSearch(hosts.cars, airport, pickUp, dropOff));
}

std::optional<std::string> PartnerConfig::toursLink(std::string_view place) const {
    if (!toursProgram) return std::nullopt;
    return viaRedirect(*this, toursProgram, Links::toursSearch(hosts.tours, place));
}

std::string PartnerConfig::shopLink(std::string_view phrase) const {
    return Links::shopSearch(hosts.shop, phrase, shopTag);
}

}  // namespace tripkit

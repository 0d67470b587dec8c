#include "tripkit/links.h"

#include <algorithm>
#include <cctype>
#include <optional>

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

bool isHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

// A fare file's path and query with every character that does not belong
// there percent-encoded; "%XX" escapes already there are kept.
std::string encodedPathAndQuery(std::string_view text) {
    constexpr std::string_view queryKeeps = "/?:@!$&'()*+,;=";
    std::string out;
    bool inPath = true;
    bool inFragment = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const bool escape = c == '%' && i + 2 < text.size() && isHex(text[i + 1]) && isHex(text[i + 2]);
        bool keep = escape || Links::unreserved.find(c) != std::string_view::npos || c == '/';
        if (!inPath) keep = keep || queryKeeps.find(c) != std::string_view::npos;
        if (c == '?' && inPath) {
            inPath = false;
            keep = true;
        } else if (c == '#' && !inFragment) {
            inPath = false;
            inFragment = true;
            keep = true;
        }
        if (keep) {
            out += c;
        } else {
            out += fmt::format("%{:02X}", static_cast<unsigned char>(c));
        }
    }
    return out;
}

// An address with a scheme ("https:", "javascript:") or a host of its own
// ("//host/..."), rather than a path on the partner.
bool isAbsolute(std::string_view link) {
    if (link.starts_with("//")) return true;
    const std::size_t colon = link.find(':');
    return colon != std::string_view::npos && colon < link.find_first_of("/?#");
}

std::string lowered(std::string_view text) {
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

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
    path += percentEncoded(origin);
    path += dayMonth(depart);
    path += percentEncoded(destination);
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
    if (deal.link) {
        if (auto link = fareLink(*deal.link, base, marker)) return *link;
    }
    return flightSearch(base, deal.origin.value_or(""), deal.depart, deal.destination,
                        deal.returnDay, Passengers{}, marker);
}

std::optional<std::string> Links::fareLink(std::string_view link, std::string_view base,
                                           std::string_view marker) {
    std::string url;
    if (isAbsolute(link)) {
        const auto host = hostOf(link);
        if (!host || host != hostOf(base)) return std::nullopt;
        const std::size_t start = std::string_view("https://").size() + host->size();
        const std::size_t pathStart = std::min(link.find_first_of("/?#", start), link.size());
        url = std::string(link.substr(0, pathStart)) + encodedPathAndQuery(link.substr(pathStart));
    } else {
        url = withoutTrailingSlash(base);
        if (!link.starts_with('/')) url += '/';
        url += encodedPathAndQuery(link);
    }
    url = withMarker(url, marker);
    if (!isSafeLink(url)) return std::nullopt;
    return url;
}

bool Links::isSafeLink(std::string_view url) {
    if (!hostOf(url)) return false;
    constexpr std::string_view refused = "\\\"<>`{}|^";
    return std::none_of(url.begin(), url.end(), [&](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte <= 0x20 || byte >= 0x7F || refused.find(c) != std::string_view::npos;
    });
}

std::optional<std::string> Links::hostOf(std::string_view url) {
    constexpr std::string_view scheme = "https://";
    if (url.size() < scheme.size() || lowered(url.substr(0, scheme.size())) != scheme) {
        return std::nullopt;
    }
    std::string_view authority = url.substr(scheme.size());
    authority = authority.substr(0, authority.find_first_of("/?#"));
    std::string_view host = authority.substr(0, authority.find(':'));
    if (host.size() < authority.size()) {
        const std::string_view port = authority.substr(host.size() + 1);
        if (port.empty() || port.size() > 5 ||
            !std::all_of(port.begin(), port.end(), [](char c) { return c >= '0' && c <= '9'; })) {
            return std::nullopt;
        }
    }
    const bool hostChars = std::all_of(host.begin(), host.end(), [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.';
    });
    if (host.empty() || !hostChars || host.starts_with('.') || host.starts_with('-')) {
        return std::nullopt;
    }
    return lowered(host);
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

std::optional<std::string> checked(std::string link) {
    if (!Links::isSafeLink(link)) return std::nullopt;
    return link;
}

}  // namespace

std::optional<std::string> PartnerConfig::flightSearch(const Deal& deal) const {
    return checked(Links::flightSearch(deal, hosts.flights, marker));
}

std::optional<std::string> PartnerConfig::hotelLink(std::string_view city, Day checkIn,
                                                    Day checkOut,
                                                    const std::vector<Links::Room>& rooms) const {
    return checked(viaRedirect(*this, hotelProgram,
                               Links::hotelSearch(hosts.hotels, city, checkIn, checkOut, rooms)));
}

std::optional<std::string> PartnerConfig::carLink(std::string_view airport, Day pickUp,
                                                  Day dropOff) const {
    return checked(
        viaRedirect(*this, carProgram, Links::carSearch(hosts.cars, airport, pickUp, dropOff)));
}

std::optional<std::string> PartnerConfig::toursLink(std::string_view place) const {
    if (!toursProgram) return std::nullopt;
    return checked(viaRedirect(*this, toursProgram, Links::toursSearch(hosts.tours, place)));
}

std::optional<std::string> PartnerConfig::shopLink(std::string_view phrase) const {
    return checked(Links::shopSearch(hosts.shop, phrase, shopTag));
}

}  // namespace tripkit

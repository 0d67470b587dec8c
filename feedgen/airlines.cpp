#include "feedgen/airlines.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace roamwise::feedgen {

namespace {

using Codes = std::initializer_list<std::string_view>;

bool in(Codes codes, std::string_view code) {
    return std::find(codes.begin(), codes.end(), code) != codes.end();
}

// U.S. network carriers: hubs (nonstops to anywhere at home and nearby
// abroad) and the gateways of their long-haul flights.
struct Network {
    std::string_view code;
    Codes hubs;
    Codes gateways;
};
const std::array<Network, 3> kNetwork = {{
    {"AA",
     {"DFW", "CLT", "MIA", "PHL", "PHX", "ORD", "DCA", "JFK", "LAX", "LGA"},
     {"DFW", "CLT", "MIA", "PHL", "ORD", "JFK", "LAX"}},
    {"DL",
     {"ATL", "DTW", "MSP", "SLC", "JFK", "LGA", "BOS", "SEA", "LAX"},
     {"ATL", "DTW", "MSP", "JFK", "BOS", "SEA", "LAX", "SLC"}},
    {"UA",
     {"ORD", "DEN", "IAH", "EWR", "SFO", "IAD", "LAX"},
     {"EWR", "IAD", "ORD", "IAH", "SFO", "DEN", "LAX"}},
}};

// Airlines of the places abroad: nonstop from the U.S. gateways they serve,
// a connection on a partner from anywhere else.
struct Flag {
    std::string_view code;
    Codes destinations;
    Codes gateways;
};
const std::array<Flag, 17> kFlags = {{
    {"TP", {"LIS", "OPO", "PDL"}, {"JFK", "EWR", "BOS", "IAD", "ORD", "MIA", "SFO"}},
    {"BA",
     {"LHR", "EDI"},
     {"JFK", "BOS", "IAD", "ORD", "MIA", "LAX", "SFO", "SEA", "DFW", "ATL", "IAH"}},
    {"VS", {"LHR"}, {"JFK", "BOS", "LAX", "SFO", "ATL", "MCO"}},
    {"AF", {"CDG", "NCE"}, {"JFK", "IAD", "BOS", "ATL", "ORD", "LAX", "SFO", "MIA", "IAH"}},
    {"KL", {"AMS"}, {"JFK", "ATL", "MSP", "DTW", "ORD", "SEA", "LAX", "SFO", "IAH", "BOS"}},
    {"LH",
     {"FRA", "MUC", "BER"},
     {"JFK", "EWR", "BOS", "IAD", "ORD", "ATL", "DEN", "LAX", "SFO", "IAH", "MIA", "DFW"}},
    {"EI", {"DUB"}, {"JFK", "BOS", "ORD", "IAD", "SEA", "LAX", "SFO", "MIA"}},
    {"FI", {"KEF"}, {"JFK", "EWR", "BOS", "IAD", "ORD", "SEA", "DEN", "MSP"}},
    {"IB", {"MAD", "BCN"}, {"JFK", "BOS", "ORD", "MIA", "LAX"}},
    {"JL", {"NRT", "KIX"}, {"JFK", "ORD", "DFW", "LAX", "SFO", "SEA", "BOS"}},
    {"NH", {"NRT"}, {"JFK", "ORD", "IAD", "LAX", "SFO", "SEA", "IAH"}},
    {"QF", {"SYD"}, {"LAX", "SFO", "DFW"}},
    {"NZ", {"AKL", "ZQN"}, {"LAX", "SFO", "IAH", "ORD", "JFK"}},
    {"SQ", {"SIN"}, {"JFK", "EWR", "LAX", "SFO", "SEA"}},
    {"AC",
     {"YYZ", "YUL", "YVR", "YQB", "YYC"},
     {"JFK", "LGA", "EWR", "BOS", "ORD", "IAD", "LAX", "SFO", "SEA", "MIA", "FLL", "MCO", "DEN",
      "IAH", "ATL", "LAS", "PHX"}},
    {"AM",
     {"MEX", "CUN", "OAX", "MID", "SJD", "PVR"},
     {"LAX", "JFK", "ORD", "IAH", "MIA", "DFW", "ATL", "LAS", "SFO"}},
    {"CM",
     {"PTY", "BOG", "MDE", "CTG", "LIM", "UIO", "GUA", "MGA", "SJO", "SCL", "EZE", "GRU", "GIG"},
     {"JFK", "MIA", "ORD", "IAD", "LAX", "SFO", "MCO", "FLL", "BOS", "LAS", "DEN", "TPA", "IAH"}},
}};

// The places beyond Europe and South America that U.S. carriers fly to
// nonstop from some gateway.
const Codes kLongHaulNonstops = {"NRT", "KIX", "ICN", "HKG", "PVG", "TPE", "DEL", "TLV",
                                 "JNB", "CPT", "ACC", "SYD", "AKL", "PPT", "CMN"};

bool nearAbroad(const tripkit::Destination& d) {
    return d.region == "Canada" || d.region == "Mexico" || d.region == "Caribbean" ||
           d.region == "Central America";
}
bool islandState(const tripkit::Destination& d) {
    return in({"HNL", "OGG", "KOA", "LIH", "ANC", "FAI", "JNU"}, d.code);
}
bool hawaii(const tripkit::Destination& d) {
    return in({"HNL", "OGG", "KOA", "LIH"}, d.code);
}
// Places the leisure airlines sell from everywhere they fly.
bool leisure(const tripkit::Destination& d) {
    return in({"MCO", "MIA", "FLL", "TPA", "RSW", "LAS", "SJU", "MYR", "PHX", "SAN",
               "LAX", "DEN", "ATL", "MSY", "BNA", "AUS", "SRQ", "VPS", "SAV", "CHS",
               "ORD", "DFW", "IAH", "BOS", "PHL", "DCA", "SFO", "SEA", "JFK", "SLC"},
              d.code) ||
           (nearAbroad(d) && d.region != "Canada");
}

}  // namespace

std::vector<RouteCarrier> carriersFor(const tripkit::Airport& origin,
                                      const tripkit::Destination& destination,
                                      double distanceMiles) {
    const std::string_view from = origin.code;
    const std::string_view to = destination.code;
    const bool home = destination.domestic;
    const bool near = nearAbroad(destination);
    std::vector<RouteCarrier> out;

    for (const Network& n : kNetwork) {
        int stops = 1;
        if (home || (near && distanceMiles < 3200)) {
            if (in(n.hubs, from) || (home && in(n.hubs, to))) stops = 0;
        } else if (in(n.gateways, from) && distanceMiles < 8600 &&
                   (destination.region == "Europe" || destination.region == "South America" ||
                    in(kLongHaulNonstops, to))) {
            stops = 0;
        } else if (distanceMiles > 7000 && !in(n.hubs, from)) {
            stops = 2;
        }
        out.push_back({n.code, false, 1.0, stops});
    }
    for (const Flag& f : kFlags) {
        if (!in(f.destinations, to)) continue;
        out.push_back({f.code, false, 1.03, in(f.gateways, from) ? 0 : 1});
    }

    const bool west = origin.lon < -112;
    const bool east = origin.lon > -100;
    const Codes b6Focus = {"JFK", "BOS", "FLL", "MCO", "EWR", "LGA", "SJU"};
    const bool b6Reach = (home && !islandState(destination)) ||
                         (near && destination.region != "Canada") ||
                         (in({"LHR", "CDG", "DUB", "AMS", "EDI"}, to) && in({"JFK", "BOS"}, from));
    if (b6Reach && (in(b6Focus, from) || in(b6Focus, to))) {
        out.push_back({"B6", true, 0.88, 0});
    } else if (b6Reach && east && !destination.region.empty() && destination.region != "Europe") {
        out.push_back({"B6", true, 0.88, 1});
    }

    const Codes wnFocus = {"ATL", "BWI", "MDW", "DAL", "HOU", "DEN", "LAS", "PHX",
                           "OAK", "SJC", "SAN", "LAX", "BNA", "AUS", "MCO", "TPA",
                           "FLL", "STL", "MCI", "SMF", "SAT", "MSY"};
    const bool wnAbroad =
        in({"CUN", "SJD", "PVR", "MBJ", "NAS", "PUJ", "AUA", "BZE", "SJO", "LIR"}, to);
    const bool wnHawaii = hawaii(destination) && west;
    if (!in({"JFK", "EWR"}, from) &&
        ((home && !islandState(destination)) || wnAbroad || wnHawaii)) {
        const bool nonstop =
            wnHawaii || (distanceMiles < 2100 && (in(wnFocus, from) || in(wnFocus, to)));
        out.push_back({"WN", true, 0.9, nonstop ? 0 : 1});
    }

    const Codes nkFocus = {"FLL", "MCO", "DTW", "LAS", "ATL", "EWR", "LGA", "ORD",
                           "DFW", "IAH", "BWI", "BOS", "MSY", "PHL", "LAX"};
    if (!islandState(destination) &&
        (leisure(destination) || in({"BOG", "MDE", "CTG", "LIM"}, to))) {
        if (in(nkFocus, from)) {
            out.push_back(
                {"NK", true, 0.72, in(nkFocus, to) || (home && leisure(destination)) ? 0 : 1});
        } else if (east && in({"FLL", "MCO", "LAS"}, to)) {
            out.push_back({"NK", true, 0.72, 0});
        }
    }
    const Codes f9Focus = {"DEN", "LAS", "MCO", "ATL", "PHL", "ORD", "DFW",
                           "MIA", "TPA", "CVG", "RDU", "CLE", "MSP"};
    if (leisure(destination) && !islandState(destination) &&
        destination.region != "Central America" &&
        (in(f9Focus, from) || (home && in(f9Focus, to)))) {
        out.push_back({"F9", true, 0.74, 0});
    }

    const Codes asWest = {"SEA", "PDX", "SFO", "LAX", "SAN", "ANC", "PAE", "SJC",
                          "OAK", "SMF", "BOI", "GEG", "BUR", "ONT", "SNA", "PSP"};
    if ((home || in({"SJD", "PVR", "CUN", "MEX", "SJO", "LIR", "BZE", "GUA", "YVR"}, to)) &&
        (in(asWest, from) || (home && in({"SEA", "PDX", "ANC"}, to)))) {
        out.push_back({"AS", true, 0.93, 0});
    }
    if (hawaii(destination) &&
        in({"LAX", "SFO", "SAN", "SEA", "PDX", "OAK", "SJC", "SMF", "LAS", "PHX", "JFK", "BOS"},
           from)) {
        out.push_back({"HA", false, 0.97, 0});
    }

    const bool bigAirport =
        in({"ATL", "BOS", "BWI", "CLT", "DCA", "DEN", "DFW", "DTW", "EWR", "FLL",
            "IAD", "IAH", "JFK", "LAS", "LAX", "LGA", "MCO", "MDW", "MIA", "MSP",
            "ORD", "PHL", "PHX", "SAN", "SEA", "SFO", "SLC", "TPA"},
           from);
    if (!bigAirport &&
        in({"LAS", "TPA", "RSW", "VPS", "SRQ", "MYR", "FLL", "PHX", "SAV", "PIE"}, to) &&
        distanceMiles < 2200) {
        out.push_back({"G4", true, 0.76, 0});
    }
    if (from == "MSP" && (leisure(destination) && !home
                              ? true
                              : in({"LAS", "PHX", "MCO", "TPA", "RSW", "FLL", "SAN", "LAX"}, to))) {
        out.push_back({"SY", true, 0.82, 0});
    }
    // Nobody sells a connection on a short hop that has a nonstop.
    const bool anyNonstop =
        std::any_of(out.begin(), out.end(), [](const RouteCarrier& c) { return c.stops == 0; });
    if (anyNonstop && distanceMiles < 500) {
        std::erase_if(out, [](const RouteCarrier& c) { return c.stops > 0; });
    }
    return out;
}

}  // namespace roamwise::feedgen

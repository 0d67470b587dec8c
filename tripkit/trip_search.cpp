#include "tripkit/trip_search.h"

namespace tripkit {

void decode(const json::Value& v, TripSearch& out) {
    out.origin = v.get<std::string>("origin");
    out.party = v.get<Party>("party");
    out.nights = v.get<int>("nights");
    if (out.nights < 0 || out.nights > TripSearch::maxNights) {
        v.field("nights").fail("expected 0 to " + std::to_string(TripSearch::maxNights) +
                               " nights");
    }
    out.parkDays = v.get<int>("parkDays");
    if (out.parkDays < 0) v.field("parkDays").fail("expected a count of 0 or more");
    // The park days fall on the days of the stay, arrival and departure included.
    if (out.parkDays > out.nights + 1) {
        v.field("parkDays").fail("expected at most " + std::to_string(out.nights + 1) +
                                 " park days in " + std::to_string(out.nights) + " nights");
    }
    out.resorts = v.get<ResortChoice>("resorts");
    out.parkHopper = v.get<bool>("parkHopper");
    out.lightningLane = v.get<LightningLaneChoice>("lightningLane");
    out.epicUniverse = v.getOptional<bool>("epicUniverse");
    out.transport = v.get<TransportChoice>("transport");
    out.food = v.getOptional<FoodBudget>("food");
    out.window = v.get<DateWindow>("window");
    out.fares = v.get<FareFilter>("fares");
    out.maxTotal = std::nullopt;
    if (v.find("maxTotal")) out.maxTotal = readAmount(v, "maxTotal");
}

json::Json encode(const TripSearch& s) {
    json::Json out = json::Json::object();
    out["origin"] = s.origin;
    out["party"] = encode(s.party);
    out["nights"] = s.nights;
    out["parkDays"] = s.parkDays;
    out["resorts"] = encode(s.resorts);
    out["parkHopper"] = s.parkHopper;
    out["lightningLane"] = encode(s.lightningLane);
    json::putOptional(out, "epicUniverse", s.epicUniverse);
    out["transport"] = encode(s.transport);
    json::putOptional(out, "food", s.food);
    out["window"] = encode(s.window);
    out["fares"] = encode(s.fares);
    json::putOptional(out, "maxTotal", s.maxTotal);
    return out;
}

}  // namespace tripkit

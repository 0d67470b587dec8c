#include "cli/park_data.h"

#include "cli/table.h"
#include "tripkit/events.h"

namespace roamwise::cli {

using namespace tripkit;

namespace {

// The folder's copy of `name` decoded, or nothing (after saying why when it
// is there but unusable).
template <class T>
std::optional<T> folderCopy(const DataOptions& data, const std::string& name, std::ostream& err) {
    if (data.sample) return std::nullopt;
    try {
        std::optional<simdjson::padded_string> bytes = readDataFile(data, name);
        if (!bytes) return std::nullopt;
        return json::decodePadded<T>(std::move(*bytes), name);
    } catch (const std::exception& e) {
        err << "roamwise-cli: " << shown(e.what()) << "; using the shipped " << name << "\n";
        return std::nullopt;
    }
}

}  // namespace

ParkData loadParkData(const DataOptions& data, std::ostream& err) {
    std::optional<DisneyGuide> disney = folderCopy<DisneyGuide>(data, "disney-guide.json", err);
    std::optional<UniversalGuide> universal =
        folderCopy<UniversalGuide>(data, "universal-guide.json", err);
    std::optional<EventCalendar> events =
        folderCopy<EventCalendar>(data, "disney-events.json", err);
    ParkData out{disney ? std::move(*disney) : DisneyGuide::shipped(),
                 universal ? std::move(*universal) : UniversalGuide::shipped()};
    out.disney.busyEvents = DisneyGuide::busySpans(events ? *events : EventCalendar::shipped());
    return out;
}

MainHome loadMainHome(const DataOptions& data, std::ostream& err) {
    const std::string code = parseHomeCodes(data.homes).front();
    const Airport* home = Airports::shipped().find(code);
    if (!home) throw UsageError("--home: not an airport of the catalog: " + code);
    const Airport* orlando = Airports::shipped().find("MCO");
    if (!orlando) throw std::logic_error("the airport catalog has no MCO");
    MainHome out{*home, *orlando, std::nullopt};
    forEachHomeFile<FareBook>(
        data, "flights", {code}, err,
        [&](const std::string&, FareBook&& book) { out.book = std::move(book); },
        FareNeeds{resolveToday(data.today), true, false});
    if (!out.book) err << "roamwise-cli: flights use typical fares for every date\n";
    return out;
}

}  // namespace roamwise::cli

// Entry basics (which document a U.S. citizen flies with), the passport
// reminder, and the packing checklist made for a destination.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tripkit/days.h"
#include "tripkit/destinations.h"
#include "tripkit/json.h"

namespace tripkit {

// One line of the user's checklist ("packing.json" holds an array of them).
struct PackingItem {
    std::string id;
    std::string title;
    bool packed = false;
    friend bool operator==(const PackingItem&, const PackingItem&) = default;
};

void decode(const json::Value& v, PackingItem& out);
json::Json encode(const PackingItem& item);

// The maker of a new checklist; the list is the user's from then on.
struct Packing {
    // The items for `place`, unticked, each title once (the first stays).
    static std::vector<PackingItem> newList(const Destination& place);
    // An item's id: its title in lower case, words joined by '-'
    // ("Phone charger" -> "phone-charger"); titles are unique in a new list.
    static std::string idFor(const std::string& title);

    static constexpr const char* abroadSummary =
        "Passport basics, a passport reminder and a packing list.";
    static constexpr const char* homeSummary = "ID for the flight and a packing list.";
    static constexpr const char* keptNote = "Kept on this device only. Swipe to delete.";
    static constexpr const char* startOver = "Start the list over";
};

// The document rule for a destination.
struct EntryBasics {
    enum class Document { photoId, passport };

    struct Link {
        std::string title;
        std::string url;
        friend bool operator==(const Link&, const Link&) = default;
    };

    Document document = Document::passport;
    std::string place;  // the destination's name, as the texts use it

    static EntryBasics of(const Destination& destination);

    // The rule itself.
    std::string text() const;
    // Abroad, the rules that can change; nothing at home.
    std::optional<std::string> note() const;
    // Abroad, the State Department's passport pages; none at home.
    std::vector<Link> links() const;
    // What the checklist screen offers for this place.
    const char* summary() const;

    friend bool operator==(const EntryBasics&, const EntryBasics&) = default;
};

const char* name(EntryBasics::Document document);  // "photoId", "passport"
json::Json encode(EntryBasics::Document document);

// A reminder to check the passport some weeks before a trip.
struct PassportReminder {
    int weeks = 0;  // `passportWeeks` of the preferences
    Day trip;

    // The day the reminder comes: `weeks` whole weeks before the trip.
    Day day() const { return trip - 7 * static_cast<std::int64_t>(weeks); }
    // The reminder's day is before today. On the day itself it is still to
    // come: the notification is set for the morning, and the logic has no clock.
    bool isPast(Day today) const { return day() < today; }

    static constexpr const char* title = "Remind me to check my passport";
    static constexpr const char* help =
        "Processing times change through the year; the State Department’s page has today’s. "
        "Choose how far ahead to be reminded.";
    static constexpr const char* pastText = "That’s already past, so check your passport now.";

    friend bool operator==(const PassportReminder&, const PassportReminder&) = default;
};

// A trip the user has dates for ("trip-dates.json" holds an array of them):
// the passport reminder is kept for it.
struct TripDate {
    std::string destination;  // destination code
    Day depart;
    std::optional<Day> reminded;  // the day the reminder was shown; once per trip

    static constexpr const char* reminderTitle = "Passport check: ";
    // "Passport check: " + the place.
    static std::string title(const std::string& place);
    // "Your trip is on " + the date + ". Make sure your passport ...".
    std::string body() const;
    friend bool operator==(const TripDate&, const TripDate&) = default;
};

void decode(const json::Value& v, TripDate& out);
json::Json encode(const TripDate& trip);

}  // namespace tripkit

template <>
struct std::hash<tripkit::PackingItem> {
    std::size_t operator()(const tripkit::PackingItem& item) const noexcept;
};

#include "tripkit/checklist.h"

#include <gtest/gtest.h>

#include <set>

using namespace tripkit;

namespace {

Destination place(std::string name, bool domestic, std::vector<std::string> categories) {
    Destination d;
    d.code = "XXX";
    d.name = std::move(name);
    d.domestic = domestic;
    d.categories = std::move(categories);
    return d;
}

std::vector<std::string> titles(const std::vector<PackingItem>& items) {
    std::vector<std::string> out;
    for (const PackingItem& item : items) out.push_back(item.title);
    return out;
}

TEST(Packing, NewListFollowsTheRulesInOrderWithoutRepeats) {
    struct Case {
        const char* what;
        Destination place;
        std::vector<std::string> expected;
    };
    const std::vector<Case> cases = {
        {"domestic city",
         place("Boston", true, {"cities"}),
         {"Photo ID (REAL ID or passport)", "Phone charger", "Medicines",
          "Comfortable walking shoes", "Day bag"}},
        {"theme parks and city: walking shoes once, where the theme parks put them",
         place("Tokyo", false, {"cities", "theme parks"}),
         {"Passport", "Power adapter", "Phone charger", "Medicines", "Comfortable walking shoes",
          "Portable battery", "Day bag"}},
        {"island abroad with family",
         place("Nassau", false, {"islands", "family"}),
         {"Passport", "Power adapter", "Phone charger", "Medicines", "Swimsuit", "Sunscreen",
          "Sunglasses", "Sandals", "Snacks for the trip"}},
        {"outdoors at home; categories without items add nothing",
         place("Bozeman", true, {"skiing", "outdoors", "food", "culture"}),
         {"Photo ID (REAL ID or passport)", "Phone charger", "Medicines", "Hiking shoes",
          "Rain jacket", "Refillable water bottle"}},
    };
    for (const Case& c : cases) {
        const auto items = Packing::newList(c.place);
        EXPECT_EQ(titles(items), c.expected) << c.what;
        std::set<std::string> ids;
        for (const PackingItem& item : items) {
            EXPECT_FALSE(item.packed) << c.what << ": " << item.title;
            EXPECT_FALSE(item.id.empty());
            ids.insert(item.id);
        }
        EXPECT_EQ(ids.size(), items.size()) << c.what << ": ids repeat";
    }
    EXPECT_EQ(Packing::idFor("Photo ID (REAL ID or passport)"), "photo-id-real-id-or-passport");
}

TEST(EntryBasics, APassportAbroadPhotoIdAtHomeAndTheReminderDay) {
    // The texts are constants but for the place's name.
    const EntryBasics home = EntryBasics::of(place("Denver", true, {"cities"}));
    EXPECT_EQ(home.document, EntryBasics::Document::photoId);
    EXPECT_TRUE(home.links().empty());
    const EntryBasics abroad = EntryBasics::of(place("Lisbon", false, {"cities"}));
    EXPECT_EQ(abroad.document, EntryBasics::Document::passport);
    EXPECT_TRUE(abroad.text().starts_with("U.S. citizens need a passport book to fly to Lisbon."));
    EXPECT_EQ(abroad.links().size(), 2u);

    const Day trip = Day::fromCivil(2027, 3, 15);
    const PassportReminder reminder{8, trip};
    EXPECT_EQ(reminder.day(), Day::fromCivil(2027, 1, 18));
    EXPECT_FALSE(reminder.isPast(Day::fromCivil(2027, 1, 17)));
    EXPECT_FALSE(reminder.isPast(Day::fromCivil(2027, 1, 18)));  // the day itself is still to come
    EXPECT_TRUE(reminder.isPast(Day::fromCivil(2027, 1, 19)));
    EXPECT_EQ((PassportReminder{0, trip}).day(), trip);
}

}  // namespace

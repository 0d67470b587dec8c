// How the screens write money, days and ages, and the fixed texts of the
// window that more than one screen shows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QString>

#include "tripkit/days.h"

namespace roamwise::desktop {

struct Texts {
    static constexpr const char* privacy =
        "Roamwise doesn’t collect any data. There’s no account, no tracking and no analytics. "
        "Your settings, alerts and packing lists stay on this device.";
    static constexpr const char* partnerDisclosure =
        "Roamwise earns a commission when you book through its links, at no extra cost to you.";
    static constexpr const char* releasePage = "https://github.com/roamwise/roamwise/releases";

    // "$199": whole dollars, as every list shows them.
    static QString money(double dollars);
    // "Thu 14 May"; with the year when it is not today's year.
    static QString day(tripkit::Day day, tripkit::Day today);
    // "14 May – 21 May", or the departure alone for a one-way fare.
    static QString dates(tripkit::Day depart, std::optional<tripkit::Day> back, tripkit::Day today);
    // "today", "1 day", "5 days"
    static QString age(std::int64_t days);
    // "Nonstop", "1 stop", "2 stops"
    static QString stops(int stops);
    // "January" ... "December"
    static QString monthName(int month);
    static QString monthName(const tripkit::YearMonth& month);

    static QString of(const std::string& text) { return QString::fromStdString(text); }
};

}  // namespace roamwise::desktop

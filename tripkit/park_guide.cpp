#include "tripkit/park_guide.h"

#include "tripkit/holidays.h"

namespace tripkit {

bool isInHolidayWindow(Day day) {
    // A window can begin in the year before its holiday (New Year's Day on a
    // Saturday is observed on 31 December), so the next days' years count too.
    for (const HolidayWindow& w : Holidays::windows(day, day + 7)) {
        if (w.days.contains(day)) return true;
    }
    return false;
}

}  // namespace tripkit

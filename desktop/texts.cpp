#include "desktop/texts.h"

#include <array>
#include <cmath>

namespace roamwise::desktop {

using tripkit::Day;

namespace {

constexpr std::array<const char*, 12> kMonths = {"January", "February", "March",     "April",
                                                 "May",     "June",     "July",      "August",
                                                 "September", "October", "November", "December"};
constexpr std::array<const char*, 7> kWeekdays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

}  // namespace

QString Texts::money(double dollars) {
    return QStringLiteral("$%1").arg(static_cast<long long>(std::llround(dollars)));
}

QString Texts::day(Day day, Day today) {
    const tripkit::CivilDate civil = day.civil();
    QString text = QStringLiteral("%1 %2 %3")
                       .arg(QString::fromLatin1(kWeekdays[static_cast<std::size_t>(day.weekday() - 1)]))
                       .arg(civil.day)
                       .arg(QString::fromLatin1(kMonths[static_cast<std::size_t>(civil.month - 1)]).left(3));
    if (civil.year != today.civil().year) text += QStringLiteral(" %1").arg(civil.year);
    return text;
}

QString Texts::dates(Day depart, std::optional<Day> back, Day today) {
    if (!back) return day(depart, today);
    return day(depart, today) + QStringLiteral(" – ") + day(*back, today);
}

QString Texts::age(std::int64_t days) {
    if (days <= 0) return QStringLiteral("today");
    if (days == 1) return QStringLiteral("1 day");
    return QStringLiteral("%1 days").arg(days);
}

QString Texts::stops(int stops) {
    if (stops == 0) return QStringLiteral("Nonstop");
    if (stops == 1) return QStringLiteral("1 stop");
    return QStringLiteral("%1 stops").arg(stops);
}

QString Texts::monthName(int month) {
    if (month < 1 || month > 12) return {};
    return QString::fromLatin1(kMonths[static_cast<std::size_t>(month - 1)]);
}

QString Texts::monthName(const tripkit::YearMonth& month) {
    return monthName(month.month) + QStringLiteral(" %1").arg(month.year);
}

}  // namespace roamwise::desktop

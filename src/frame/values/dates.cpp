#include "frame/errors.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"

#include <array>
#include <cmath>
#include <optional>

namespace orvane {
namespace {

constexpr std::int32_t kSecondsPerDay = 86400;
constexpr std::int32_t kFirstDay = -657434;  // 0100-01-01
constexpr std::int32_t kLastDay = 2958465;   // 9999-12-31
constexpr std::int32_t kLeastYear = 100;

struct CivilDate {
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;
};

// A calendar of 400 years repeats. Its years are taken from March 1st on, so that the leap day is
// the last day of a year, and day 0 of the count is 0000-03-01.
constexpr std::int32_t kDaysPerEra = 146097;
constexpr std::int32_t kDayZero = 693899;  // 1899-12-30, counted from 0000-03-01

/// Days since 1899-12-30, for years from 0 on.
constexpr std::int32_t daysOf(const CivilDate& date) {
    const std::int32_t year = date.month > 2 ? date.year : date.year - 1;
    const std::int32_t monthFromMarch = (date.month + 9) % 12;
    const std::int32_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
    return year * 365 + year / 4 - year / 100 + year / 400 + dayOfYear - kDayZero;
}

/// The opposite of `daysOf`.
constexpr CivilDate civilOf(std::int32_t days) {
    const std::int32_t fromMarch = days + kDayZero;
    const std::int32_t era = fromMarch / kDaysPerEra;
    const std::int32_t dayOfEra = fromMarch % kDaysPerEra;
    const std::int32_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int32_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int32_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int32_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    const std::int32_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month, day};
}

static_assert(daysOf({1899, 12, 30}) == 0);
static_assert(daysOf({100, 1, 1}) == kFirstDay);
static_assert(daysOf({9999, 12, 31}) == kLastDay);

bool isInCalendar(const CivilDate& date) {
    if (date.year < kLeastYear || date.month < 1 || date.month > 12 || date.day < 1) return false;
    // A day that its month lacks counts on into the next one.
    return civilOf(daysOf(date)).month == date.month;
}

/// Reads the parts of a date from the front of a text.
class DateReader {
public:
    explicit DateReader(WStringView text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }

    bool take(char16_t unit) {
        if (rest_.empty() || rest_.front() != unit) return false;
        rest_.remove_prefix(1);
        return true;
    }

    /// A number of exactly `digits` digits.
    std::optional<std::int32_t> number(std::size_t digits) {
        if (rest_.size() < digits) return std::nullopt;
        std::int32_t value = 0;
        for (const char16_t unit : rest_.substr(0, digits)) {
            if (unit < u'0' || unit > u'9') return std::nullopt;
            value = value * 10 + (unit - u'0');
        }
        rest_.remove_prefix(digits);
        return value;
    }

private:
    WStringView rest_;
};

/// "21.11.2026" or "2026-11-21" in days; moves `reader` behind it only when it is there.
std::optional<std::int32_t> takeDate(DateReader& reader) {
    DateReader ahead = reader;
    std::optional<std::int32_t> year;
    std::optional<std::int32_t> month;
    std::optional<std::int32_t> day = ahead.number(2);
    if (day && ahead.take(u'.')) {
        month = ahead.number(2);
        if (!month || !ahead.take(u'.')) return std::nullopt;
        year = ahead.number(4);
    } else {
        ahead = reader;
        year = ahead.number(4);
        if (!year || !ahead.take(u'-')) return std::nullopt;
        month = ahead.number(2);
        if (!month || !ahead.take(u'-')) return std::nullopt;
        day = ahead.number(2);
    }
    if (!year || !month || !day || !isInCalendar({*year, *month, *day})) return std::nullopt;
    reader = ahead;
    return daysOf({*year, *month, *day});
}

/// "10:30" or "10:30:00" in seconds.
std::optional<std::int32_t> takeTime(DateReader& reader) {
    const auto hour = reader.number(2);
    if (!hour || !reader.take(u':')) return std::nullopt;
    const auto minute = reader.number(2);
    if (!minute) return std::nullopt;
    std::optional<std::int32_t> second = 0;
    if (reader.take(u':')) second = reader.number(2);
    if (!second || *hour > 23 || *minute > 59 || *second > 59) return std::nullopt;
    return (*hour * 60 + *minute) * 60 + *second;
}

Date compose(std::int32_t day, std::int32_t seconds) {
    const double time = static_cast<double>(seconds) / kSecondsPerDay;
    return {day < 0 ? day - time : day + time};
}

std::optional<Date> parseDate(WStringView text) {
    DateReader reader(text);
    const auto day = takeDate(reader);
    if (day && reader.atEnd()) return compose(*day, 0);
    if (day && !reader.take(u' ')) return std::nullopt;
    const auto seconds = takeTime(reader);
    if (!seconds || !reader.atEnd()) return std::nullopt;
    return compose(day.value_or(0), *seconds);
}

void appendNumber(std::u16string& out, std::int32_t value, int digits) {
    std::array<char16_t, 4> buffer{};
    for (int i = digits; i-- > 0; value /= 10) {
        buffer[static_cast<std::size_t>(i)] = static_cast<char16_t>(u'0' + value % 10);
    }
    out.append(buffer.data(), static_cast<std::size_t>(digits));
}

void appendDate(std::u16string& out, const CivilDate& date) {
    appendNumber(out, date.day, 2);
    out += u'.';
    appendNumber(out, date.month, 2);
    out += u'.';
    appendNumber(out, date.year, 4);
}

void appendTime(std::u16string& out, std::int32_t seconds) {
    appendNumber(out, seconds / 3600, 2);
    out += u':';
    appendNumber(out, seconds / 60 % 60, 2);
    out += u':';
    appendNumber(out, seconds % 60, 2);
}

}  // namespace

Date numberToDate(double days) {
    // A time of day keeps the last day a little above its number, the first one a little below.
    if (!(days > kFirstDay - 1 && days < kLastDay + 1)) raise(error::kOverflow);
    return {days};
}

Date textToDate(WStringView text) {
    if (const auto date = parseDate(trim(text))) return *date;
    return numberToDate(textToDouble(text));
}

WString dateToText(Date value) {
    const double days = numberToDate(value.days).days;
    auto day = static_cast<std::int32_t>(days);
    auto seconds = static_cast<std::int32_t>(roundHalfEven(std::fabs(days - day) * kSecondsPerDay));
    if (seconds == kSecondsPerDay) {
        // There is no day behind the last one to round up to.
        const bool last = day == kLastDay;
        seconds = last ? kSecondsPerDay - 1 : 0;
        day += last ? 0 : 1;
    }
    std::u16string text;
    if (day != 0) appendDate(text, civilOf(day));
    if (day != 0 && seconds != 0) text += u' ';
    if (day == 0 || seconds != 0) appendTime(text, seconds);
    return text;
}

}  // namespace orvane

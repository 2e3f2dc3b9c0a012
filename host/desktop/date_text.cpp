#include "host/desktop/date_text.h"

#include <QDate>
#include <array>

#include "host/screens/persian_digits.h"
#include "host/services/jalali_calendar.h"

namespace basalt::host {

QString longDate(const CivilDateTime& moment) {
    // From Monday, as QDate counts.
    static constexpr std::array<const char*, 7> kDays{"دوشنبه", "سه‌شنبه", "چهارشنبه", "پنجشنبه", "جمعه",
                                                      "شنبه",   "یکشنبه"};
    const int day = QDate(moment.year, moment.month, moment.day).dayOfWeek();
    const JalaliDate date = toJalali(moment.year, moment.month, moment.day);
    const std::string_view month = monthName(date.month);
    return persianDigits(QStringLiteral("%1 %2 %3 %4")
                             .arg(QString::fromUtf8(kDays.at(static_cast<std::size_t>(day - 1))))
                             .arg(date.day)
                             .arg(QString::fromUtf8(month.data(), static_cast<qsizetype>(month.size())))
                             .arg(date.year));
}

}  // namespace basalt::host

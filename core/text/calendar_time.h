#pragma once

namespace zorvel {

// A wall-clock moment in whole seconds, as the program writes it into logs and data files.
struct CalendarTime {
  int year = 2000;
  int month = 1;
  int day = 1;
  int hour = 0;
  int minute = 0;
  int second = 0;

  friend bool operator==(const CalendarTime&, const CalendarTime&) = default;
};

// Days since 1970-01-01 of a civil date, and back; used to step a virtual clock over midnight.
long daysFromCivil(int year, int month, int day);
CalendarTime civilFromDays(long days);

}  // namespace zorvel

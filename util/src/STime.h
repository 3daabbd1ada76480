#ifndef STIME_H
#define STIME_H

#include "SString.h"

#include <ctime>

// A broken-down local time with its date and time texts.
class STime {
public:
  // Now, from the clock.
  STime();
  explicit STime(time_t seconds);

  void set(time_t seconds);
  void setNow() { set(::time(nullptr)); }

  const struct tm& tm() const { return itsTime; }
  time_t seconds() const { return itsSeconds; }
  // "%m/%d/%Y"
  const SString& date() const { return itsDate; }
  // "%H:%M:%S"
  const SString& time() const { return itsClock; }
  // "%m/%d/%Y %H:%M:%S"
  SString dateTime() const { return itsDate + " " + itsClock; }
  SString format(const char* fmt) const;

private:
  struct tm itsTime;
  time_t itsSeconds;
  SString itsDate;
  SString itsClock;
};

#endif

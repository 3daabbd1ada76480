#include "SRunTimeException.h"

#include <cstdarg>
#include <cstdio>

SRunTimeException::SRunTimeException(int messageNumber, const char* fmt, ...) : itsMessageNumber(messageNumber) {
  itsText[0] = '\0';
  if (!fmt) return;
  va_list args;
  va_start(args, fmt);
  vsnprintf(itsText, sizeof itsText, fmt, args);
  va_end(args);
}

SFileReadException::SFileReadException(int messageNumber, const char* fmt, ...) : itsMessageNumber(messageNumber) {
  itsText[0] = '\0';
  if (!fmt) return;
  va_list args;
  va_start(args, fmt);
  vsnprintf(itsText, sizeof itsText, fmt, args);
  va_end(args);
}

#include "SProgress.h"

#include <chrono>
#include <cstring>

SProgress theProgress;

namespace {

int64_t Now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

int64_t Nanoseconds(double seconds) { return seconds > 0 ? int64_t(seconds * 1e9) : 0; }

} // namespace

void SProgress::Enable(FILE* out, bool stdoutShared, const char* program) {
  Disable();
  itsOut = out;
  itsStdoutShared = stdoutShared;
  itsProgram = program ? program : "";
  itsStart = Now();
  itsDrawn = false;
}

void SProgress::Disable() {
  Erase();
  itsOut = nullptr;
  itsPhase = nullptr;
}

void SProgress::SetTiming(double delaySeconds, double intervalSeconds) {
  itsDelay = Nanoseconds(delaySeconds);
  itsInterval = Nanoseconds(intervalSeconds);
}

void SProgress::Begin(const char* phase, uint64_t total, const char* unit) {
  if (!itsOut) return;
  itsPhase = phase;
  itsTotal = total;
  itsUnit = unit ? unit : "";
}

void SProgress::End() {
  Erase();
  itsPhase = nullptr;
}

int SProgress::Format(uint64_t done, char* text, int size) const {
  const char* phase = itsPhase ? itsPhase : "";
  int length;
  if (itsTotal > 0 && done <= itsTotal) {
    const unsigned percent = unsigned(double(done) * 100.0 / double(itsTotal));
    length = snprintf(text, size_t(size), "%s: %s %u%%", itsProgram, phase, percent);
  } else {
    length = snprintf(text, size_t(size), "%s: %s %llu %s", itsProgram, phase, (unsigned long long)done, itsUnit);
  }
  return length < 0 ? 0 : (length < size ? length : size - 1);
}

void SProgress::Poll(uint64_t done) {
  itsCountdown = kTickStride;
  if (!itsPhase || !itsOut) return;
  const int64_t now = Now();
  if (now - itsStart < itsDelay) return;
  if (itsDrawn && now - itsLastDraw < itsInterval) return;
  char text[sizeof itsText];
  const int length = Format(done, text, int(sizeof text));
  itsLastDraw = now;
  itsDrawn = true;
  if (itsShown > 0 && strcmp(text, itsText) == 0) return;
  // Blanks cover what a longer line before left.
  char line[2 * sizeof itsText + 1];
  int used = 0;
  line[used++] = '\r';
  memcpy(line + used, text, size_t(length));
  used += length;
  for (int i = length; i < itsShown; ++i) line[used++] = ' ';
  Write(line, used);
  memcpy(itsText, text, size_t(length) + 1);
  itsShown = length > itsShown ? length : itsShown;
}

void SProgress::ClearIfShared(FILE* stream) {
  if (stream == itsOut || (stream == stdout && itsStdoutShared)) Erase();
}

void SProgress::Erase() {
  if (itsShown == 0 || !itsOut) return;
  char line[sizeof itsText + 2];
  int used = 0;
  line[used++] = '\r';
  for (int i = 0; i < itsShown; ++i) line[used++] = ' ';
  line[used++] = '\r';
  Write(line, used);
  itsShown = 0;
}

void SProgress::Write(const char* text, int length) {
  fwrite(text, 1, size_t(length), itsOut);
  fflush(itsOut);
}

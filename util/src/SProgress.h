#ifndef SPROGRESS_H
#define SPROGRESS_H

#include <cstdint>
#include <cstdio>

// A progress line for long runs: the phase and the share done, redrawn in place with a
// carriage return. It is off until the application turns it on, which it does only when
// standard error is a terminal, so that files, pipes and logs never see it. The line
// stands only while a phase runs: the end of a phase clears it, and so does any text
// about to be written where it would land in the line (see ClearFor).
class SProgress {
public:
  // Hot loops tick; the clock is read only once every this many ticks.
  static constexpr unsigned kTickStride = 4096;

  constexpr SProgress() = default;
  SProgress(const SProgress&) = delete;
  SProgress& operator=(const SProgress&) = delete;

  // Starts the run's clock. `out` is the terminal; `stdoutShared` says that standard output
  // shows on it as well, so that its text too must find the line cleared. `program` heads
  // the line and must outlive the run.
  void Enable(FILE* out, bool stdoutShared, const char* program);
  // Clears the line; nothing is drawn from then on.
  void Disable();
  bool IsEnabled() const { return itsOut != nullptr; }

  // Nothing is drawn before `delaySeconds` from Enable, and the line is redrawn at most once
  // every `intervalSeconds`.
  void SetTiming(double delaySeconds, double intervalSeconds);

  // A phase counts done against `total`. A total of 0 is unknown, and so is one that the
  // count passes (an estimate): the line then shows the count followed by `unit`. Both
  // texts must outlive the phase.
  void Begin(const char* phase, uint64_t total, const char* unit);
  void End();

  // For loops that run millions of times.
  void Tick(uint64_t done) {
    if (--itsCountdown == 0) Poll(done);
  }
  // For steps that come rarely, such as a buffer read: the clock is read each time.
  void Update(uint64_t done) {
    if (itsPhase) Poll(done);
  }

  // Call before writing text to `stream`, and the text starts on a clean line.
  void ClearFor(FILE* stream) {
    if (itsShown > 0) ClearIfShared(stream);
  }

  // What the line shows for `done` of the current phase.
  int Format(uint64_t done, char* text, int size) const;

private:
  void Poll(uint64_t done);
  void ClearIfShared(FILE* stream);
  void Erase();
  void Write(const char* text, int length);

  FILE* itsOut = nullptr;
  bool itsStdoutShared = false;
  const char* itsProgram = "";
  const char* itsPhase = nullptr;
  const char* itsUnit = "";
  uint64_t itsTotal = 0;
  unsigned itsCountdown = kTickStride;
  // Steady clock, nanoseconds.
  int64_t itsStart = 0;
  int64_t itsLastDraw = 0;
  int64_t itsDelay = 1000000000;
  int64_t itsInterval = 200000000;
  bool itsDrawn = false;
  // Characters of the line on the terminal now; 0 when it is clear.
  int itsShown = 0;
  char itsText[128] = {};
};

// The process's one line, reached from every library.
extern SProgress theProgress;
inline SProgress& Progress() { return theProgress; }

// A phase of the process's line for the length of a scope, so that every way out of it
// clears the line.
class SProgressPhase {
public:
  SProgressPhase(const char* phase, uint64_t total, const char* unit) { Progress().Begin(phase, total, unit); }
  ~SProgressPhase() { Progress().End(); }
  SProgressPhase(const SProgressPhase&) = delete;
  SProgressPhase& operator=(const SProgressPhase&) = delete;
};

#endif

#ifndef SRUNTIMEEXCEPTION_H
#define SRUNTIMEEXCEPTION_H

#include <exception>

// Thrown by the few library paths that unwind instead of reporting: a message
// number and up to 512 bytes of text.
class SRunTimeException : public std::exception {
public:
  SRunTimeException(int messageNumber, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
  int MessageNumber() const { return itsMessageNumber; }
  const char* Text() const { return itsText; }
  const char* what() const noexcept override { return itsText; }

private:
  int itsMessageNumber;
  char itsText[512];
};

// A read that failed.
class SFileReadException : public std::exception {
public:
  SFileReadException(int messageNumber, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
  int MessageNumber() const { return itsMessageNumber; }
  const char* Text() const { return itsText; }
  const char* what() const noexcept override { return itsText; }

private:
  int itsMessageNumber;
  char itsText[512];
};

#endif

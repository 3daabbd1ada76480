#ifndef FUZZINPUT_H
#define FUZZINPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

// The reader takes file names; fuzz data goes through a file of the process's own.
std::string FuzzFile(const uint8_t* data, size_t size);
// A second, empty file, for what a target writes and reads back.
std::string FuzzScratchFile();
// The process's own directory, in memory when the machine has a tmpfs, removed at its end;
// empty when none could be made.
std::string FuzzDirectory();
// The whole content of a file named by one of the above.
std::string FuzzFileContent(const std::string& name);
void FuzzSetup();
// Says what a target found wrong, with the input that shows it, and stops the process.
[[noreturn]] void FuzzBroken(const char* what, const std::string& detail);

#endif

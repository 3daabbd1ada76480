#ifndef FUZZINPUT_H
#define FUZZINPUT_H

#include <cstddef>
#include <cstdint>
#include <string>

// The reader takes file names; fuzz data goes through an anonymous memory file.
std::string FuzzFile(const uint8_t* data, size_t size);
void FuzzSetup();

#endif

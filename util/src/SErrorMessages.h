#ifndef SERRORMESSAGES_H
#define SERRORMESSAGES_H

#include "SHashDictionary.h"
#include "SString.h"

// The numbered message texts, read from the message files, and the names those
// files define. One instance serves the process.
class SErrorMessages : public SHashDictionary {
  SCOLLECTABLE_DECLARE(SErrorMessages)
public:
  SErrorMessages() {}
  ~SErrorMessages() override;
  SErrorMessages(const SErrorMessages&) = delete;
  SErrorMessages& operator=(const SErrorMessages&) = delete;
  SCollectable* newSpecies() const override { return new SErrorMessages(); }
  SCollectable* copy() const override { return new SErrorMessages(); }

  // Reads one message file into the tables. A file that can't be opened gives a warning
  // and false; bad lines are passed over.
  bool LoadFile(const SString& path);

  // A duplicate number replaces the text.
  void SetMessage(int number, const SString& text);
  // The text, or null.
  const SString* FindMessage(int number) const;
  bool HasMessage(int number) const { return FindMessage(number) != nullptr; }
  void Define(const SString& name, int value);
  // The value of a defined name; 0 when unknown.
  int Definition(const SString& name, bool* found = nullptr) const;
  // A chain of decimal numbers and defined names joined by "+" or "-", from 0, left to right.
  int Evaluate(const SString& expression) const;
  void ClearAll();

  // Reads a message file of the resource directory into the process's instance: the
  // directory is "$VELORA_RESOURCE_DIR", or the key ErrorStringDir of section "Velora" of
  // the global settings. An empty name is the fatal error "VL1012".
  static bool LoadStringFile(const char* name);
  // "strings_util.h" and "strings_filelib.h"; the program adds its own file.
  static void LoadStringFiles();

  // The process's instance, made on first use.
  static SErrorMessages* Instance();
  static void DestroyInstance();

private:
  bool LoadFile(const SString& path, int depth);

  SHashDictionary itsDefinitions;
};

#endif

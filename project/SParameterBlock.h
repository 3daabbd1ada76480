#ifndef SPARAMETERBLOCK_H
#define SPARAMETERBLOCK_H

#include "SFileBlock.h"

#include <vector>

// VAR: named values of a project without a geometry. Each line is "<name> = <value>",
// the value kept as its text (a number or an equation); the named-value lines of the
// current format (VALVAR, VCNSTR) are kept as read until the variable list takes them.
class SParameterBlock : public SFileBlock {
  SCOLLECTABLE_DECLARE(SParameterBlock)
  SCOLLECTABLE_COPYABLE(SParameterBlock)
public:
  struct SEntry {
    SString name;
    SString value;
    // False for a value marked " false" on its line.
    bool inUse = true;
    // A VALVAR or VCNSTR line as read; name and value are empty then.
    SString line;
  };

  explicit SParameterBlock(SProject* owner = nullptr) : SFileBlock(owner, "VAR") {}

  bool ReadBody(SFile& file, SProjectErrorManager& errors) override;
  void WriteBody(SProjectStream& out) override;

  const std::vector<SEntry>& GetEntries() const { return itsEntries; }
  // The value text of a name, or empty.
  SString GetValue(const SString& name) const;
  void SetValue(const SString& name, const SString& value);
  void Clear() { itsEntries.clear(); }

  // Splits "<name> = <value> [true|false]" as the variable list does; false without "=".
  static bool ParseLine(const SString& line, SEntry& entry);

private:
  std::vector<SEntry> itsEntries;
};

#endif

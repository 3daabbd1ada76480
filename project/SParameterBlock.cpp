#include "SParameterBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SParameterBlock, SID_PARAMETERBLOCK, &SFileBlock::staticTypeInfo())

namespace {
SString Trimmed(const SString& text, bool quotes) {
  QString t = text.qstring().trimmed();
  if (quotes) {
    while (t.startsWith(QLatin1Char('"'))) t.remove(0, 1);
    while (t.endsWith(QLatin1Char('"'))) t.chop(1);
    t = t.trimmed();
  }
  return SString(t);
}
}  // namespace

bool SParameterBlock::ParseLine(const SString& line, SEntry& entry) {
  const int equals = line.index("=");
  if (equals < 0) return false;
  entry.name = Trimmed(line.left(equals), true);
  QString value = line.mid(equals + 1).qstring().trimmed();
  entry.inUse = true;
  if (value.endsWith(QLatin1String(" true"))) {
    value.chop(5);
  } else if (value.endsWith(QLatin1String(" false"))) {
    value.chop(6);
    entry.inUse = false;
  }
  entry.value = SString(value.trimmed());
  entry.line.clear();
  return true;
}

bool SParameterBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsEntries.clear();
  for (;;) {
    if (!file.HasToken()) return true;
    SString first;
    file.PeekToken(first);
    if (Match(first, "END")) return true;
    SEntry entry;
    if (Match(first, "VALVAR") || (Match(first, "VCNSTR") && !itsEntries.empty())) {
      entry.line = file.CurrentLine();
    } else if (!ParseLine(file.CurrentLine(), entry)) {
      if (!Unknown(file, first, errors)) return false;
      continue;
    }
    itsEntries.push_back(entry);
    itsPresent = true;
    if (!file.NextLine()) return true;
  }
}

void SParameterBlock::WriteBody(SProjectStream& out) {
  for (const SEntry& entry : itsEntries) {
    if (!entry.line.isEmpty()) {
      // The named-value lines exist from format 9 on.
      if (Format() >= 9) out << entry.line << '\n';
      continue;
    }
    out.Name(entry.name) << " = " << entry.value;
    if (!entry.inUse && Format() >= 9) out << " false";
    out << '\n';
  }
}

SString SParameterBlock::GetValue(const SString& name) const {
  for (const SEntry& entry : itsEntries)
    if (entry.line.isEmpty() && entry.name == name) return entry.value;
  return SString();
}

void SParameterBlock::SetValue(const SString& name, const SString& value) {
  for (SEntry& entry : itsEntries)
    if (entry.line.isEmpty() && entry.name == name) {
      entry.value = value;
      return;
    }
  SEntry entry;
  entry.name = name;
  entry.value = value;
  itsEntries.push_back(entry);
}

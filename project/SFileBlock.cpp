#include "SFileBlock.h"

#include "SDimensionBlock.h"
#include "SFile.h"
#include "SInitializationFile.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SProjectFormat.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SFileBlock, SID_FILEBLOCK, &SCollectable::staticTypeInfo())

bool SFileBlock::Match(const SString& token, const char* keyword) { return token.startsWith(SString(keyword), true); }
bool SFileBlock::Match(const SString& token, const SString& keyword) { return token.startsWith(keyword, true); }
int SFileBlock::LineOf(const SFile& file) { return static_cast<int>(file.LineCount()); }
bool SFileBlock::TakeSectionEnd(SFile& file) {
  SString token;
  if (!file.PeekToken(token) || token.upper() != "END") return false;
  file.NextToken();
  const bool blockEnd = file.HasToken();
  file.RewindLine();
  if (!blockEnd) file.NextLine();
  return true;
}

int SFileBlock::Format() { return SProjectFormat::GetWriteFormat(); }

bool SFileBlock::Read(SFile& file, SProjectErrorManager& errors) {
  SString token;
  if (!file.GetToken(token)) {
    if (!file.NextLine()) {
      errors.AddError(SProjectErrorManager::Error, LineOf(file), 7143);
      return false;
    }
    file.GetToken(token);
  }
  if (!Match(token, itsName)) {
    errors.AddError(SProjectErrorManager::Error, LineOf(file), 7141, token.data(), itsName.data());
    return false;
  }
  itsStartLine = LineOf(file);
  if (!ReadFirstLine(file)) {
    itsPresent = false;
    return false;
  }
  const bool ok = ReadBody(file, errors);
  SString next;
  file.PeekToken(next);
  if (!ok) {
    itsPresent = false;
    return false;
  }
  // A body may stop at anything its reader can't pass; what follows decides at top level.
  if (!Match(next, "END")) {
    itsPresent = true;
    return true;
  }
  file.GetToken(next);
  SString closing;
  if (file.GetToken(closing) && !Match(closing, itsName)) {
    errors.AddError(SProjectErrorManager::Error, LineOf(file), 7142, closing.data(), itsName.data());
    return false;
  }
  itsEndLine = LineOf(file);
  file.NextLine();
  itsPresent = true;
  return true;
}

bool SFileBlock::ReadFirstLine(SFile& file) {
  file.NextLine();
  return true;
}

bool SFileBlock::ReadBody(SFile&, SProjectErrorManager&) { return true; }

bool SFileBlock::Skip(SFile& file) {
  if (itsStartLine < 0) itsStartLine = LineOf(file);
  for (;;) {
    SString first;
    if (file.GetFirstToken(first) && Match(first, "END")) {
      file.RewindLine();
      SString end, second;
      file.GetToken(end);
      if (file.GetToken(second) && Match(second, itsName)) {
        itsEndLine = LineOf(file);
        file.NextLine();
        return true;
      }
    }
    if (!file.NextLine()) return false;
  }
}

bool SFileBlock::CheckFormat(int, QStringList&) { return true; }

bool SFileBlock::HandleUnknown(const SString& keyword, const SString& lineText, int lineNumber,
                               SProjectErrorManager& errors) {
  (void)lineText;
  SInitializationFile* settings = SInitializationFile::GetGlobal();
  const bool newer = !itsOwner || itsOwner->IsFileNewer();
  bool stop;
  if (newer)
    stop = settings ? settings->GetBool("Velora", "StopOnPostVersionUnknowns", false) : false;
  else
    stop = settings ? settings->GetBool("Velora", "StopOnInVersionUnknowns", true) : true;
  if (stop) {
    errors.AddError(SProjectErrorManager::Error, lineNumber, 7284, itsName.data(), keyword.data());
    return false;
  }
  errors.AddError(SProjectErrorManager::Warning, lineNumber, 7283, itsName.data(), keyword.data());
  return true;
}

bool SFileBlock::Unknown(SFile& file, const SString& keyword, SProjectErrorManager& errors) {
  SString text;
  file.GetLine(text);
  if (!HandleUnknown(keyword, text, LineOf(file), errors)) return false;
  file.NextLine();
  return true;
}

double SFileBlock::FrequencyRatio(const SDimensionBlock& newUnits) const {
  const SDimensionBlock* old = itsOwner ? itsOwner->GetDimensionBlock() : nullptr;
  if (old == nullptr) return 1.0;
  const double oldFactor = old->GetFactor(SDimensionBlock::Frequency);
  const double newFactor = newUnits.GetFactor(SDimensionBlock::Frequency);
  return oldFactor == 0.0 || newFactor == 0.0 ? 1.0 : oldFactor / newFactor;
}

void SFileBlock::SetDefaults() { itsPresent = true; }
void SFileBlock::ChangeUnits(const SDimensionBlock&) {}
bool SFileBlock::Validate(SProjectErrorManager&) { return true; }

bool SFileBlock::Write(SProjectStream& out) {
  out << itsName;
  WriteFirstLine(out);
  WriteBody(out);
  out << "END " << itsName << '\n';
  return true;
}

void SFileBlock::WriteFirstLine(SProjectStream& out) { out << '\n'; }
void SFileBlock::WriteBody(SProjectStream&) {}

SString SFileBlock::BodyText() const {
  SProjectStream out;
  const_cast<SFileBlock*>(this)->WriteBody(out);
  return out.ToString();
}

void SFileBlock::Compare(SString& report, const SFileBlock& other) const {
  report += SString::format("%s, line nu = %d\n", itsName.data(), itsStartLine);
  report += SString::format("%s, line nu = %d\n", other.itsName.data(), other.itsStartLine);
  Difference(report, other);
}

void SFileBlock::Difference(SString& report, const SFileBlock& other) const {
  if (isA() != other.isA()) {
    report += SString::format("Block1 = %s\n", typeInfo()->name());
    report += SString::format("Block2 = %s\n", other.typeInfo()->name());
    return;
  }
  const SString mine = BodyText();
  const SString theirs = other.BodyText();
  if (mine != theirs) {
    report += "Block1 = " + mine + "\n";
    report += "Block2 = " + theirs + "\n";
  }
}

SFileBlock* SFileBlock::Clone(SProject* owner) const {
  SFileBlock* block = static_cast<SFileBlock*>(copy());
  block->itsOwner = owner;
  return block;
}

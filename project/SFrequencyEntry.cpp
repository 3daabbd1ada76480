#include "SFrequencyEntry.h"

#include "SABSFindSweep.h"
#include "SABSSweep.h"
#include "SAWRFullBandABSSweep.h"
#include "SAutoSweep.h"
#include "SDCPointSweep.h"
#include "SExponentialSweep.h"
#include "SExternalFileSweep.h"
#include "SFile.h"
#include "SFindMaxSweep.h"
#include "SFindMinSweep.h"
#include "SFreqListSweep.h"
#include "SLinearSweep.h"
#include "SProjectClassID.h"
#include "SSimpleSweep.h"
#include "SSingleStepFreq.h"
#include "SStandardSweep.h"

SCOLLECTABLE_DEFINE(SFrequencyEntry, SID_FREQUENCYENTRY, &SCollectable::staticTypeInfo())

SFrequencyEntry* SFrequencyEntry::Create(const SString& keyword) {
  const auto is = [&keyword](const char* word) { return keyword.compare(SString(word), true) == 0; };
  if (is("SWEEP")) return new SStandardSweep();
  if (is("SIMPLE")) return new SSimpleSweep();
  if (is("STEP")) return new SSingleStepFreq();
  if (is("LSWEEP")) return new SLinearSweep();
  if (is("ESWEEP")) return new SExponentialSweep();
  if (is("ABS_ENTRY") || is("ABS")) return new SABSSweep();
  if (is("AWRFBS")) return new SAWRFullBandABSSweep();
  if (is("ABS_FMIN") || is("ABS_FMAX")) {
    SABSFindSweep* entry = new SABSFindSweep();
    entry->itsFindMax = is("ABS_FMAX");
    return entry;
  }
  if (is("AUTO")) return new SAutoSweep();
  if (is("FINDMIN")) return new SFindMinSweep();
  if (is("FINDMAX")) return new SFindMaxSweep();
  if (is("LIST")) return new SFreqListSweep();
  if (is("DC_FREQ")) return new SDCPointSweep();
  if (is("FILE")) return new SExternalFileSweep();
  // The oldest form of a sweep line.
  if (keyword.startsWith("FRE", true)) return new SStandardSweep();
  return nullptr;
}

bool SFrequencyEntry::ReadValue(SFile& file, SDoubleValid& value) {
  SString token;
  if (!file.PeekToken(token)) return false;
  if (token == "UNK") {
    file.GetToken(token);
    value.SetInvalid();
    return true;
  }
  double number = 0.0;
  if (!file.GetDouble(number)) return false;
  value.Set(number);
  return true;
}

void SFrequencyEntry::WriteValue(SProjectStream& out, const SDoubleValid& value) {
  if (value.IsValid())
    out << value.GetValue();
  else
    out << "UNK";
}

bool SFrequencyEntry::Compare(const SFrequencyEntry& other) const {
  if (isA() != other.isA()) return false;
  SProjectStream mine, theirs;
  Write(mine);
  other.Write(theirs);
  return mine.Text() == theirs.Text();
}

SString SFrequencyEntry::NumberText(double value) { return SNumberFormat::ToString(value, SNumberFormat::Short); }

void SFrequencyEntry::ScaleValue(SDoubleValid& value, double ratio) {
  if (value.IsValid()) value.Set(value.GetValue() * ratio);
}

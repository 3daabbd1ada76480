#include "SParameterBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SVariablePair.h"

SCOLLECTABLE_DEFINE(SParameterBlock, SID_PARAMETERBLOCK, &SFileBlock::staticTypeInfo())

bool SParameterBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsList.Clear();
  for (;;) {
    if (!file.HasToken()) return true;
    SString first;
    file.PeekToken(first);
    // "ENDS = 2" is an entry, not the block's end.
    if (Match(first, "END") && !file.CurrentLine().contains("=")) return true;
    const SVariableSpecification::LineResult result = itsList.ReadLine(file, itsOwner, errors);
    if (result == SVariableSpecification::LineFailed) return false;
    if (result == SVariableSpecification::LineNotInList) {
      if (!Unknown(file, first, errors)) return false;
      continue;
    }
    itsPresent = true;
    if (!file.NextLine()) return true;
  }
}

void SParameterBlock::WriteBody(SProjectStream& out) {
  const int format = Format();
  for (size_t i = 0; i < itsList.Count(); ++i) {
    const SVariablePair& pair = *itsList.At(i);
    const bool valvar = format >= 21 && pair.NeedsValvarForm();
    SVariableSpecification::WritePair(out, pair, SString(), !valvar && format >= 9 && !pair.IsInUse(), valvar);
  }
}

SFileBlock* SParameterBlock::Clone(SProject* owner) const {
  auto* block = static_cast<SParameterBlock*>(SFileBlock::Clone(owner));
  for (size_t i = 0; i < block->itsList.Count(); ++i) block->itsList.At(i)->Value().SetProject(owner);
  return block;
}

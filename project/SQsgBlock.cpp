#include "SQsgBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"

SCOLLECTABLE_DEFINE(SQsgBlock, SID_QSGBLOCK, &SFileBlock::staticTypeInfo())

namespace {
// Keyword tests of the reader, in their order, with the item each sets.
const struct {
  const char* test;
  int item;
} kTests[] = {{"IMP", SQsgBlock::Import}, {"EXT", SQsgBlock::ExtraMetal}, {"ALI", SQsgBlock::Align},
              {"REF", SQsgBlock::Ref},    {"VIE", SQsgBlock::ViewRes},    {"MET", SQsgBlock::Metals},
              {"UNI", SQsgBlock::Units},  {"USE", SQsgBlock::Used}};
const char* const kWritten[SQsgBlock::ItemCount] = {"IMPORT ", "EXTRA_METAL ", "UNITS ",   "ALIGN ",
                                                    "REF ",    "VIEW_RES ",    "METALS ", "USED "};
}  // namespace

SQsgBlock::SQsgBlock(SProject* owner) : SFileBlock(owner, "QSG") { ResetItems(); }

void SQsgBlock::ResetItems() {
  for (bool& item : itsItems) item = false;
  itsItems[Used] = true;
}

void SQsgBlock::SetDefaults() {
  ResetItems();
  SFileBlock::SetDefaults();
}

bool SQsgBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsWasRead = false;
  for (;;) {
    if (!file.HasToken()) break;
    SString keyword;
    file.PeekToken(keyword);
    if (Match(keyword, "END")) break;
    int item = -1;
    for (const auto& test : kTests)
      if (Match(keyword, test.test)) {
        item = test.item;
        break;
      }
    if (item < 0) {
      if (!Unknown(file, keyword, errors)) return false;
      continue;
    }
    SString value;
    file.GetToken(keyword);
    file.GetToken(value);
    itsItems[item] = value == "YES";
    if (!file.NextLine()) break;
  }
  itsWasRead = true;
  return true;
}

bool SQsgBlock::Write(SProjectStream& out) { return itsWasRead ? SFileBlock::Write(out) : true; }

void SQsgBlock::WriteBody(SProjectStream& out) {
  for (int item = 0; item < ItemCount; ++item) out << kWritten[item] << (itsItems[item] ? "YES" : "NO") << '\n';
}

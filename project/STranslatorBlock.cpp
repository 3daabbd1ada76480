#include "STranslatorBlock.h"

#include "SFile.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SVeloraError.h"

#include <QCoreApplication>
#include <QSettings>

SCOLLECTABLE_DEFINE(STranslatorBlock, SID_TRANSLATORBLOCK, &SFileBlock::staticTypeInfo())

STranslatorBlock::STranslatorBlock(SProject* owner)
    : SFileBlock(owner, "TRANSLATOR"),
      itsExports{STranslatorExport(STranslatorExport::Dxf), STranslatorExport(STranslatorExport::Gds),
                 STranslatorExport(STranslatorExport::Gerber)} {}

void STranslatorBlock::SetDefaults() {
  SFileBlock::SetDefaults();
  for (STranslatorExport& record : itsExports) {
    record.SetDefaults();
    record.SetPresent(false);
  }
}

void STranslatorBlock::LoadSavedOptions() {
  // The editor's store is the suite's; a process that hasn't named its organisation has none.
  const QString organisation = QCoreApplication::organizationName();
  if (organisation.isEmpty()) return;
  QSettings settings(organisation, QStringLiteral("planform"));
  settings.beginGroup(QStringLiteral("/settings/TransBlock/ExportOptions"));
  for (int key = 0; key < STranslatorExport::KeyCount; ++key) {
    const QString name = QLatin1String(STranslatorExport::KeyName(key));
    if (!settings.contains(name)) continue;
    const SString value(settings.value(name).toString());
    for (STranslatorExport& record : itsExports) record.SetFromText(SString(name), value);
  }
  itsExports[STranslatorExport::Gds].CopyGeneralKeys(itsExports[STranslatorExport::Dxf]);
  itsExports[STranslatorExport::Gerber].CopyGeneralKeys(itsExports[STranslatorExport::Dxf]);
}

bool STranslatorBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  SetDefaults();
  LoadSavedOptions();
  for (;;) {
    SString word;
    if (!file.PeekToken(word)) {
      if (!file.NextLine()) return true;
      continue;
    }
    if (Match(word, "END")) return true;
    const int kind = STranslatorExport::KindOfWord(word);
    if (kind >= 0 && !itsExports[kind].Read(file)) {
      // The message alone says only "Project": the line that failed goes with it.
      SString line, detail;
      file.GetLine(line);
      VeloraFormatMessage(detail, 7132, line.data());
      errors.AddText(SProjectErrorManager::Error, LineOf(file), 7140, VeloraMessageText(7140) + ": " + detail);
      return false;
    }
    if (!file.NextLine()) return true;
  }
}

bool STranslatorBlock::Write(SProjectStream& out) {
  if (Format() < 11) return true;
  return SFileBlock::Write(out);
}

void STranslatorBlock::WriteBody(SProjectStream& out) {
  for (const STranslatorExport& record : itsExports)
    if (record.IsPresent()) record.Write(out);
}

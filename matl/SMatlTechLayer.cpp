#include "SMatlTechLayer.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlFieldReader.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlTechLayer, SID_MATLTECHLAYER, &SMatlMaterial::staticTypeInfo())

namespace {
const SMatlWord kKeywords[] = {{"GDSLAYER", SMatlTechLayer::Gds}, {"DXFLAYER", SMatlTechLayer::Dxf},
                               {"GBRLAYER", SMatlTechLayer::Gerber}, {nullptr, 0}};
}

SMatlTechLayer::SMatlTechLayer() : itsLayer(new STechLayer) {}

SMatlTechLayer::SMatlTechLayer(const SMatlTechLayer& other)
    : SMatlMaterial(other), itsLayer(new STechLayer), itsSubKind(other.itsSubKind), itsUsed(other.itsUsed) {
  itsLayer->SetName(other.itsLayer->GetName());
  itsLayer->SetStream(other.itsLayer->GetRawStream());
  itsLayer->SetData(other.itsLayer->GetRawData());
  itsLayer->SetDXFName(other.itsLayer->GetDXFName());
  itsLayer->SetGerberName(other.itsLayer->GetGerberName());
}

SMatlTechLayer::~SMatlTechLayer() {}

const char* SMatlTechLayer::SubKindKeyword(int subKind) { return SMatlFieldReader::WordOf(kKeywords, subKind); }

bool SMatlTechLayer::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  const int subKind = reader.Keyword(kKeywords, "Unrecognized tech layer string, found %s.", 20134);
  if (subKind < 0) return false;
  itsSubKind = subKind;
  SString name;
  if (subKind == Gds) {
    int stream = 0;
    int data = 0;
    const bool ok = reader.Name(name, {20134, 0, 20134}, SMatlFieldReader::NoBlankNoIllegal) &&
                    reader.Int(stream, {20132, 20132, 20132}, SMatlFieldReader::AtLeastZero) &&
                    reader.Int(data, {20133, 20133, 20133}, SMatlFieldReader::AtLeastZero);
    if (!ok) return false;
    itsLayer->SetName(name);
    itsLayer->SetStream(stream);
    itsLayer->SetData(data);
    return true;
  }
  SString other;
  const bool ok = reader.Name(name, {20134, 0, 20134}, SMatlFieldReader::NoIllegalCharacter) &&
                  reader.Name(other, {20134, 0, 20134}, SMatlFieldReader::NoIllegalCharacter);
  if (!ok) return false;
  itsLayer->SetName(name);
  if (subKind == Dxf)
    itsLayer->SetDXFName(other);
  else
    itsLayer->SetGerberName(other);
  return true;
}

bool SMatlTechLayer::Write(SProjectStream& out) const {
  if (itsSubKind < Gds || itsSubKind > All) return false;
  if (itsSubKind == NotSet) {
    VeloraTrace(3, TRACE_ERRORS, "Tech Layer Type not set.");
    return false;
  }
  const SString& name = itsLayer->GetName();
  const bool all = itsSubKind == All;
  if ((all || itsSubKind == Gds) && itsLayer->GetRawStream() >= 0)
    out << "GDSLAYER \"" << name << "\" " << itsLayer->GetRawStream() << ' ' << itsLayer->GetRawData() << '\n';
  if ((all || itsSubKind == Dxf) && !itsLayer->GetDXFName().isEmpty())
    out << "DXFLAYER \"" << name << "\" \"" << itsLayer->GetDXFName() << "\"\n";
  if ((all || itsSubKind == Gerber) && !itsLayer->GetGerberName().isEmpty())
    out << "GBRLAYER \"" << name << "\" \"" << itsLayer->GetGerberName() << "\"\n";
  VeloraTrace(5, TRACE_GENERAL, "Completed writing Tech Layer item.");
  return true;
}

bool SMatlTechLayer::IsEqual(const SMatlMaterial& other) const {
  const SMatlTechLayer* o = dynamic_cast<const SMatlTechLayer*>(&other);
  if (!o || itsSubKind != o->itsSubKind) return false;
  const STechLayer& a = *itsLayer;
  const STechLayer& b = *o->itsLayer;
  return a.GetName() == b.GetName() && a.GetRawStream() == b.GetRawStream() && a.GetRawData() == b.GetRawData() &&
         a.GetDXFName() == b.GetDXFName() && a.GetGerberName() == b.GetGerberName();
}

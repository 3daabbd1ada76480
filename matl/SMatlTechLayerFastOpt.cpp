#include "SMatlTechLayerFastOpt.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlFieldReader.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlTechLayerFastOpt, SID_MATLTECHLAYERFASTOPT, &SMatlMaterial::staticTypeInfo())

namespace {
const SMatlWord kKeywords[] = {{"SHIELD", SMatlTechLayerFastOpt::Shield},
                               {"CAPMETAL", SMatlTechLayerFastOpt::CapMetal},
                               {nullptr, 0}};
}

SMatlTechLayerFastOpt::SMatlTechLayerFastOpt() : itsLayer(new STechLayer) {}

SMatlTechLayerFastOpt::SMatlTechLayerFastOpt(const SMatlTechLayerFastOpt& other)
    : SMatlMaterial(other), itsLayer(new STechLayer), itsSubKind(other.itsSubKind) {
  itsLayer->SetName(other.itsLayer->GetName());
  itsLayer->SetShieldName(other.itsLayer->GetShieldName());
  itsLayer->SetCapMetalName(other.itsLayer->GetCapMetalName());
}

SMatlTechLayerFastOpt::~SMatlTechLayerFastOpt() {}

const char* SMatlTechLayerFastOpt::SubKindKeyword(int subKind) { return SMatlFieldReader::WordOf(kKeywords, subKind); }

bool SMatlTechLayerFastOpt::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  const int subKind = reader.Keyword(kKeywords, "Unrecognized tech layer fast option string, found %s.", 20134);
  if (subKind < 0) return false;
  SString name;
  SString other;
  const bool ok = reader.Name(name, {20134, 0, 20134}, SMatlFieldReader::NoBlank) &&
                  reader.Name(other, {20134, 0, 20134}, SMatlFieldReader::NoBlank);
  if (!ok) return false;
  // A second line for the same layer adds the other name.
  const int previous = itsSubKind;
  itsSubKind = (previous != NotSet && previous != subKind) ? Both : subKind;
  itsLayer->SetName(name);
  if (subKind == Shield)
    itsLayer->SetShieldName(other);
  else
    itsLayer->SetCapMetalName(other);
  return true;
}

bool SMatlTechLayerFastOpt::Write(SProjectStream& out) const {
  if (itsSubKind != Shield && itsSubKind != CapMetal && itsSubKind != Both) {
    VeloraTrace(3, TRACE_ERRORS, "Tech Layer Fast Opt Type not set.");
    return false;
  }
  const SString& name = itsLayer->GetName();
  if (itsSubKind != CapMetal) out << "SHIELD \"" << name << "\" \"" << itsLayer->GetShieldName() << "\"\n";
  if (itsSubKind != Shield) out << "CAPMETAL \"" << name << "\" \"" << itsLayer->GetCapMetalName() << "\"\n";
  VeloraTrace(5, TRACE_GENERAL, "Completed writing Tech Layer Fast Option item.");
  return true;
}

bool SMatlTechLayerFastOpt::IsEqual(const SMatlMaterial& other) const {
  const SMatlTechLayerFastOpt* o = dynamic_cast<const SMatlTechLayerFastOpt*>(&other);
  return o && itsSubKind == o->itsSubKind && itsLayer->GetName() == o->itsLayer->GetName() &&
         itsLayer->GetShieldName() == o->itsLayer->GetShieldName() &&
         itsLayer->GetCapMetalName() == o->itsLayer->GetCapMetalName();
}

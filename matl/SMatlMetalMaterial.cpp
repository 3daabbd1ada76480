#include "SMatlMetalMaterial.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlInterface.h"
#include "SMatlMetalDrawLayer.h"
#include "SMatlReporting.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlMetalMaterial, SID_MATLMETALMATERIAL, &SMatlMaterial::staticTypeInfo())

SMatlMetalMaterial::SMatlMetalMaterial(const SMatlMetalDrawLayer& layer)
    : SMatlMaterial(layer), SMatlDrawLayer(layer), SMatlMetalData(layer) {}

bool SMatlMetalMaterial::IsRestrictedName(const SString& name) {
  const SString upper = name.upper();
  return upper == "WG LOAD" || upper == "FREE SPACE" || upper == "LOSSLESS";
}

bool SMatlMetalMaterial::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  if (!reader.Name(itsMetalName, {20015, 0, 20141}, SMatlFieldReader::NoIllegalCharacter)) return false;
  // The project has built-in metals of these names.
  if (reader.GetFileName().contains(".matl") && IsRestrictedName(itsMetalName)) {
    VeloraTrace(3, TRACE_ERRORS, "Found restricted metal name '%s'.", itsMetalName.data());
    return reader.Fail(20015, itsMetalName);
  }
  const bool ok = reader.Real(itsRdc, {0, 20016, 20051}) && reader.Real(itsRrf, {0, 20018, 20052}) &&
                  reader.Real(itsXdc, {0, 20022, 20054}) && reader.Real(itsLs, {0, 20012, 20139}) &&
                  reader.Int(itsPattern, {20140, 20140, 20001}, SMatlFieldReader::AtLeastZero,
                             "Invalid color/pattern %d at line %d.") &&
                  reader.Word(itsMetalType, kMetalTypes, {20144, 20144, 20143}, "Invalid metal type '%s' at line %d.");
  if (!ok) return false;

  reader.BeginOptional();
  const bool rest = ReadLossFields(reader) && ReadSurfaceFields(reader);
  if (!rest) return false;
  VeloraTrace(4, TRACE_GENERAL, "Stored new material '%s'.", itsMetalName.data());
  return SetUnusedToDefault();
}

bool SMatlMetalMaterial::SetUnusedToDefault(const SString& name) {
  VeloraTrace(4, TRACE_GENERAL, "Setting metal properties to default if not used for '%s'.", name.data());
  return SMatlMetalData::SetUnusedToDefault(name);
}

bool SMatlMetalMaterial::Write(SProjectStream& out) const {
  out << "MATERIAL \"" << itsMetalName << '"';
  for (const SValueVarDouble* value : {&itsRdc, &itsRrf, &itsXdc, &itsLs}) WriteValue(out, *value);
  out << ' ' << itsPattern << " \"" << MetalTypeName(itsMetalType) << '"';
  WriteLossFields(out);
  WriteSurfaceFields(out);
  return true;
}

bool SMatlMetalMaterial::IsEqual(const SMatlMaterial& other) const {
  const SMatlMetalMaterial* o = dynamic_cast<const SMatlMetalMaterial*>(&other);
  return o && o->GetKind() == GetKind() && IsSameDrawLayer(*o) && IsSameMetal(*o);
}

void SMatlMetalMaterial::Scale(int dimension, double factor) { ScaleMetal(dimension, factor); }

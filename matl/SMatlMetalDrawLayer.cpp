#include "SMatlMetalDrawLayer.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlInterface.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlMetalDrawLayer, SID_MATLMETALDRAWLAYER, &SMatlMaterial::staticTypeInfo())

bool SMatlMetalDrawLayer::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  if (itsMatl && itsMatl->GetNumDielectrics() < 1) return reader.Fail(20026);
  const bool ok = ReadLayerFields(reader, *this) &&
                  reader.Word(itsMetalType, kMetalTypes, {20144, 20144, 20143}, "Invalid metal type '%s' at line %d.");
  if (!ok) return false;

  reader.BeginOptional();
  int edgeMesh = itsEdgeMesh ? 1 : 0;
  const bool rest =
      ReadLossFields(reader) &&
      reader.Word(itsFillType, kFillTypes, {20184, 20184, 20184}, "Invalid fill type '%s', at line %d.") &&
      reader.Int(itsXMin, {20186, 20186, 20185}, SMatlFieldReader::AtLeastOne, "Invalid XMin value %d at line %d.") &&
      reader.Int(itsXMax, {20188, 20188, 20187}, SMatlFieldReader::AtLeastOne, "Invalid XMax value %d at line %d.") &&
      reader.Int(itsYMin, {20190, 20190, 20189}, SMatlFieldReader::AtLeastOne, "Invalid YMin value %d at line %d.") &&
      reader.Int(itsYMax, {20192, 20192, 20191}, SMatlFieldReader::AtLeastOne, "Invalid YMax value %d at line %d.") &&
      reader.Word(edgeMesh, kEdgeMesh, {20193, 20193, 20193}, "Invalid UseEdgeMesh '%s', at line %d.") &&
      ReadSurfaceFields(reader);
  if (!rest) return false;
  itsEdgeMesh = edgeMesh != 0;
  if (itsLevel.IsGround() && itsMatl) itsLevel.SetNumber(itsMatl->GetHighestDielectricLevel());
  return SetUnusedToDefault();
}

bool SMatlMetalDrawLayer::SetUnusedToDefault(const SString& name) {
  VeloraTrace(4, TRACE_GENERAL, "Setting metal properties to default if not used for '%s'.", name.data());
  return SMatlMetalData::SetUnusedToDefault(name);
}

void SMatlMetalDrawLayer::OrderRanges() {
  if (itsXMin > itsXMax) {
    VeloraTrace(3, TRACE_GENERAL, "Switching XMin value with XMax value for %s.", itsLayerName.data());
    std::swap(itsXMin, itsXMax);
  }
  if (itsYMin > itsYMax) {
    VeloraTrace(3, TRACE_GENERAL, "Switching YMin value with YMax value for %s.", itsLayerName.data());
    std::swap(itsYMin, itsYMax);
  }
}

bool SMatlMetalDrawLayer::Write(SProjectStream& out) const {
  out << "METAL \"" << itsLayerName << '"';
  for (const SValueVarDouble* value : {&itsGrowth, &itsRdc, &itsRrf, &itsXdc, &itsLs}) WriteValue(out, *value);
  out << ' ' << itsPattern << " \"" << itsMetalName << "\" \"" << itsLevel.GetText() << "\" \""
      << MetalTypeName(itsMetalType) << '"';
  WriteLossFields(out);
  out << " \"" << FillTypeName(itsFillType) << "\" " << itsXMin << ' ' << itsXMax << ' ' << itsYMin << ' ' << itsYMax
      << (itsEdgeMesh ? " \"EdgeMeshOn\"" : " \"EdgeMeshOff\"");
  WriteSurfaceFields(out);
  return true;
}

bool SMatlMetalDrawLayer::IsEqual(const SMatlMaterial& other) const {
  const SMatlMetalDrawLayer* o = dynamic_cast<const SMatlMetalDrawLayer*>(&other);
  return o && o->GetKind() == GetKind() && IsSameDrawLayer(*o) && IsSameMetal(*o);
}

void SMatlMetalDrawLayer::Scale(int dimension, double factor) { ScaleMetal(dimension, factor); }

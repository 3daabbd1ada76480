#include "SMatlViaMaterial.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlViaMaterial, SID_MATLVIAMATERIAL, &SMatlViaDrawLayer::staticTypeInfo())

bool SMatlViaMaterial::IsRestrictedName(const SString& name) { return name.upper() == "LOSSLESS"; }

bool SMatlViaMaterial::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  if (!reader.Name(itsMetalName, {20015, 0, 20141}, SMatlFieldReader::NoIllegalCharacter)) return false;
  // The project has a built-in via metal of this name.
  if (IsRestrictedName(itsMetalName)) {
    VeloraTrace(3, TRACE_ERRORS, "Found restricted via metal name '%s'.", itsMetalName.data());
    return reader.Fail(20015, itsMetalName);
  }
  const bool ok = reader.Real(itsRdc, {0, 20016, 20135}) && reader.Real(itsRrf, {0, 20018, 20136}) &&
                  reader.Real(itsXdc, {0, 20022, 20137}) &&
                  reader.Int(itsPattern, {20140, 20140, 20001}, SMatlFieldReader::AtLeastZero,
                             "Invalid color/pattern %d at line %d.") &&
                  ReadViaMetalType(reader, {20164, 20164, 20096});
  if (!ok) return false;

  reader.BeginOptional();
  const bool rest = ReadConductivity(reader, RuleMetalType(), {20014, 20042, 20104}) &&
                    ReadViaThickness(reader, {20167, 20050, 20097}) &&
                    ReadArrayValue(reader, itsFillFactor, {20168, 20169, 20099}) &&
                    reader.Word(itsVolumeLossModel, kVolumeLossModels, {20176, 20176, 20176}) &&
                    reader.Word(itsLossType, kLossTypes, {20177, 20177, 20177}) &&
                    ReadArrayValue(reader, itsViaDensity, {20179, 20178, 20123});
  if (!rest) return false;
  MakeConsistent();
  return SetUnusedToDefault();
}

bool SMatlViaMaterial::Write(SProjectStream& out) const {
  out << "VMATERIAL \"" << itsMetalName << '"';
  for (const SValueVarDouble* value : {&itsRdc, &itsRrf, &itsXdc}) WriteValue(out, *value);
  out << ' ' << itsPattern << " \"" << ViaMetalTypeWord() << '"';
  WriteConductivity(out);
  WriteValue(out, itsWallThickness);
  WriteValue(out, itsFillFactor);
  out << " \"" << VolumeLossModelName(itsVolumeLossModel) << "\" \"" << LossTypeName(itsLossType) << '"';
  WriteValue(out, itsViaDensity);
  out << '\n';
  return true;
}

bool SMatlViaMaterial::IsEqual(const SMatlMaterial& other) const {
  return dynamic_cast<const SMatlViaMaterial*>(&other) && SMatlViaDrawLayer::IsEqual(other);
}

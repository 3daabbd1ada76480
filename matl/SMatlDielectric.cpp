#include "SMatlDielectric.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlFieldReader.h"
#include "SMatlMetalData.h"
#include "SMatlUtil.h"
#include "SProjectStream.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlDielectric, SID_MATLDIELECTRIC, &SMatlMaterial::staticTypeInfo())

namespace {

struct SValueField {
  int which;
  int rule;
  SMatlFieldMessages messages;
  const char* trace;
};

// Fields 1 to 6 and, on an anisotropic line, 11 to 15.
const SValueField kValues[] = {
    {SLevelData::Thickness, SMatlFieldReader::AtLeastZero, {20148, 20009, 20053}, "Invalid dielectric thickness, %g."},
    {SLevelData::Erel, SMatlFieldReader::AboveZero, {20149, 20008, 20064}, "Invalid dielectric Erel, %g."},
    {SLevelData::MuRel, SMatlFieldReader::AboveZero, {20150, 20003, 20063}, "Invalid dielectric Mrel, %g."},
    {SLevelData::DLossTan, SMatlFieldReader::AtLeastZero, {20151, 20006, 20062}, "Invalid dielectric TanE, %g."},
    {SLevelData::MLossTan, SMatlFieldReader::AtLeastZero, {20152, 20007, 20061}, "Invalid dielectric TanM, %g."},
    {SLevelData::DieElecLoss, SMatlFieldReader::AtLeastZero, {20153, 20002, 20060},
     "Invalid dielectric conductivity, %g."}};
const SValueField kValuesZ[] = {
    {SLevelData::Erel, SMatlFieldReader::AboveZero, {20158, 20113, 20113}, "Invalid dielectric Erel (Z), %g."},
    {SLevelData::MuRel, SMatlFieldReader::AboveZero, {20159, 20110, 20110}, "Invalid dielectric Mrel (Z), %g."},
    {SLevelData::DLossTan, SMatlFieldReader::AtLeastZero, {20160, 20112, 20112}, "Invalid dielectric TanE (Z), %g."},
    {SLevelData::MLossTan, SMatlFieldReader::AtLeastZero, {20161, 20111, 20111}, "Invalid dielectric TanM (Z), %g."},
    {SLevelData::DieElecLoss, SMatlFieldReader::AtLeastZero, {20162, 20109, 20109},
     "Invalid dielectric conductivity (Z), %g."}};

}  // namespace

SMatlDielectric::SMatlDielectric() {}

SMatlDielectric::SMatlDielectric(const SMatlDielectric& other)
    : SMatlMaterial(other), SLevelData(other), itsLevelNumber(other.itsLevelNumber), itsTruncate(other.itsTruncate) {}

bool SMatlDielectric::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  for (const SValueField& field : kValues)
    if (!reader.Real(itsValues[field.which], field.messages, field.rule, field.trace)) return false;
  if (!reader.Name(itsName, {20154, 0, 20147}, SMatlFieldReader::NoIllegalCharacter)) {
    VeloraTrace(3, TRACE_ERRORS, "Invalid dielectric name, %s.", reader.GetToken().data());
    return false;
  }

  reader.BeginOptional();
  int loss = GetLossType().GetCode();
  if (!reader.Word(loss, SMatlMetalData::kLossTypes, {20156, 20156, 20156}, "Invalid electrical loss type name, %s."))
    return false;
  SetLossType(loss);
  if (!reader.Int(itsNZParts, {20157, 20114, 20114}, SMatlFieldReader::AtLeastZero,
                  "Invalid dielectric Z Partition, %d."))
    return false;
  SString word;
  bool present = false;
  if (!reader.Token(word, 0, present)) return false;
  SetAnisotropic(present && word.upper() == "ANISOTROPIC");
  if (!IsAnisotropic()) return true;
  for (const SValueField& field : kValuesZ)
    if (!reader.Real(ValueZ(field.which), field.messages, field.rule, field.trace)) return false;
  return true;
}

bool SMatlDielectric::Write(SProjectStream& out) const {
  const SMatlUtil& util = SMatlUtil::Instance();
  out << "DIEL";
  for (const SValueField& field : kValues) {
    out << ' ';
    if (field.which == DieElecLoss && itsTruncate && !itsValues[field.which].HasEquation())
      out.Number(itsValues[field.which].GetValue(), 4);
    else
      util.WriteValue(out, itsValues[field.which]);
  }
  out << " \"" << itsName << "\" \"" << SMatlMetalData::LossTypeName(GetLossType().GetCode()) << "\" " << itsNZParts;
  if (IsAnisotropic()) {
    out << " \"Anisotropic\"";
    for (const SValueField& field : kValuesZ) {
      out << ' ';
      util.WriteValue(out, GetValueZ(field.which));
    }
  } else {
    out << " \"Isotropic\"";
  }
  out << '\n';
  return true;
}

bool SMatlDielectric::IsEqual(const SMatlMaterial& other) const {
  const SMatlDielectric* o = dynamic_cast<const SMatlDielectric*>(&other);
  if (!o || o->GetKind() != GetKind()) return false;
  for (int i = 0; i < ValueCount; ++i)
    if (!SMatlUtil::SameValue(itsValues[i], o->itsValues[i])) return false;
  // Z values count only on an anisotropic dielectric: an isotropic line doesn't hold them.
  if (IsAnisotropic())
    for (int i = Erel; i < ValueCount; ++i)
      if (!SMatlUtil::SameValue(GetValueZ(i), o->GetValueZ(i))) return false;
  return itsName == o->itsName && GetLossType().GetCode() == o->GetLossType().GetCode() &&
         itsNZParts == o->itsNZParts && IsAnisotropic() == o->IsAnisotropic() &&
         itsLevelNumber == o->itsLevelNumber && itsTruncate == o->itsTruncate;
}

void SMatlDielectric::Scale(int dimension, double factor) {
  const int loss = GetLossType().GetCode();
  const bool conductive = (dimension == SMatlUtil::Conductivity && loss == SMatlMetalData::Cond) ||
                          (dimension == SMatlUtil::Resistivity && loss == SMatlMetalData::Res) ||
                          (dimension == SMatlUtil::SheetResistance && loss == SMatlMetalData::ShRes);
  if (dimension == SMatlUtil::Length) SMatlUtil::ScaleValue(itsValues[Thickness], factor);
  if (conductive) {
    SMatlUtil::ScaleValue(itsValues[DieElecLoss], factor);
    SMatlUtil::ScaleValue(ValueZ(DieElecLoss), factor);
  }
}

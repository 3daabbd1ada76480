#include "SMatlColor.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlFieldReader.h"
#include "SMatlInterface.h"
#include "SVeloraTrace.h"

SCOLLECTABLE_DEFINE(SMatlColor, SID_MATLCOLOR, &SMatlMaterial::staticTypeInfo())

bool SMatlColor::Read(SCommentedFile& file) {
  SMatlFieldReader reader(file, MessageFileName(file));
  itsLine = reader.GetLineNumber();
  SString name;
  if (!reader.Name(name, {20047, 0, 20048}, SMatlFieldReader::NoBlank)) return false;
  if (itsMatl && !itsMatl->IsColorLayerNameUnique(name)) {
    VeloraTrace(3, TRACE_GENERAL, "Color name '%s' is not unique, disergarding it.", name.data());
    itsDisregarded = true;
    itsLayerName.clear();
    return true;
  }
  itsLayerName = name;
  return reader.Int(itsPattern, {20140, 20140, 20001}, SMatlFieldReader::AtLeastZero,
                    "Invalid color/pattern %d at line %d.");
}

bool SMatlColor::IsEqual(const SMatlMaterial& other) const {
  const SMatlColor* o = dynamic_cast<const SMatlColor*>(&other);
  return o && IsSameDrawLayer(*o) && itsDisregarded == o->itsDisregarded;
}

#include "SMatlMaterial.h"

#include "SCommentedFile.h"
#include "SMatlClassID.h"
#include "SMatlInterface.h"

SCOLLECTABLE_DEFINE(SMatlMaterial, SID_MATLMATERIAL, &SEnclosure::staticTypeInfo())

SMatlMaterial::SMatlMaterial(const SMatlMaterial& other) : SEnclosure(), itsMatl(other.itsMatl) {
  itsLine = other.itsLine;
}

SMatlMaterial::~SMatlMaterial() {}

bool SMatlMaterial::Write(SProjectStream&) const { return true; }

bool SMatlMaterial::Read(SCommentedFile&) { return true; }

bool SMatlMaterial::IsEqual(const SMatlMaterial& other) const { return GetKind() == other.GetKind(); }

void SMatlMaterial::Scale(int, double) {}

void SMatlMaterial::SetMatl(SMatlInterface* owner) {
  itsMatl = owner;
  if (SBaseEnclosure* enclosure = dynamic_cast<SBaseEnclosure*>(owner)) itsOwner = enclosure;
}

SString SMatlMaterial::MessageFileName(const SFile& file) const {
  if (itsMatl) {
    const SString name = itsMatl->GetInputFileName();
    if (!name.isEmpty()) return name;
  }
  return file.GetFilename();
}

#ifndef SCOUPLEDGROUP_H
#define SCOUPLEDGROUP_H

#include "SEnclosure.h"
#include "SGroundSettings.h"
#include "SRect.h"

class SCircuit;
class SFile;
class SProjectErrorManager;
class SProjectStream;
class SRefPlane;

// Ports calibrated together. Its reference planes (one per box side and one for autoground
// ports) are its children. Groups belong to the circuit's enclosure list. The terminal width
// takes the older file codes: 0 feedline, 1 custom, 2 one cell.
class SCoupledGroup : public SEnclosure, public SGroundSettings {
  SCOLLECTABLE_DECLARE(SCoupledGroup)
public:
  // The value of a ground reference that is never written.
  static constexpr int kHiddenGround = 6;

  SCoupledGroup() : SGroundSettings(0) {}

  SString GetName() const override { return itsName; }
  void SetName(const SString& name) { itsName = name; }
  // "Auto", marked LOCAL in the file.
  bool IsAutomatic() const { return itsAutomatic != 0; }
  void SetAutomatic(bool on);
  int GetGroupId() const { return itsGroupId; }
  void SetGroupId(int id) { itsGroupId = id; }
  const SRect& GetBoundingBox() const { return itsBoundingBox; }
  void SetBoundingBox(const SRect& box) { itsBoundingBox = box; }

  // The plane of a side (0 to 3, 4 autoground), made on the first request when `create`.
  SRefPlane* GetRefPlane(int side, bool create = false);

  // The first group of that name in the circuit, or null.
  static SCoupledGroup* Find(const SCircuit& circuit, const SString& name);
  // A new group with the circuit's next free id, added to the circuit.
  static SCoupledGroup* Make(SCircuit& circuit);
  // One more than the highest group id of the circuit.
  static int NextId(const SCircuit& circuit);

  // "CUPGRP" to "END".
  void Write(SProjectStream& out, int format) const;
  // After the keyword; leaves the file on the END line.
  bool Read(SFile& file, SProjectErrorManager& errors);

protected:
  // The lines from "ID" on, without the closing END.
  void WriteGroupLines(SProjectStream& out, int format) const;
  // ID, GNDREF, TWTYPE, TWVALUE or DRP1 after its key; `taken` is false for any other key.
  bool ReadGroupLine(SFile& file, const SString& key, SProjectErrorManager& errors, bool& taken);

private:
  SString itsName;
  unsigned char itsAutomatic = 0;
  int itsGroupId = 0;
  SRect itsBoundingBox;
};

#endif

#ifndef SVIAPOLYGON_H
#define SVIAPOLYGON_H

#include "SEdge.h"
#include "SMetalPolygon.h"

class SViaMetalType;

class SViaData : public SEdge {
public:
  enum Kind { EdgeVia = 0, OlderEdgeVia = 1, OlderVia = 2 };
  enum ToLevelType { ToLevelNumber = 0, ToTop = 1, ToGround = 2 };

  int GetViaKind() const { return itsViaKind; }
  void SetViaKind(int kind) { itsViaKind = kind; }
  int GetToLevel() const { return itsToLevel; }
  void SetToLevel(int level) {
    itsToLevel = level;
    itsToLevelType = ToLevelNumber;
  }
  int GetToLevelType() const { return itsToLevelType; }
  void SetToLevelType(int type) { itsToLevelType = type; }
  // "TOP", "GND" or the level number, as the TOLEVEL line has it.
  static SString ToLevelText(int type, int level);
  SString GetToLevelText() const { return ToLevelText(itsToLevelType, itsToLevel); }
  // Takes such a text (in upper case); false, and nothing taken, for anything else.
  bool SetToLevelText(const SString& text);

protected:
  int itsViaKind = EdgeVia;
  int itsToLevel = 0;
  int itsToLevelType = ToLevelNumber;
};

// A via polygon: metal from its level down to another level, the top cover or the ground.
class SViaPolygon : public SMetalPolygon, public SViaData {
  SCOLLECTABLE_DECLARE(SViaPolygon)
public:
  enum Fill { Legacy = 0, Ring = 1, Solid = 2, Vertices = 3, Center = 4, Bar = 5, HiddenFill = 6 };

  SViaPolygon() {}
  explicit SViaPolygon(SBaseEnclosure* owner) : SMetalPolygon(owner) {}

  // Null means "Lossless".
  SViaMetalType* GetViaType() const;
  void SetViaType(SViaMetalType* type);
  int GetViaFill() const { return itsViaFill; }
  void SetViaFill(int fill) { itsViaFill = fill; }
  bool HasCovers() const { return itsCovers != 0; }
  void SetCovers(bool on) { itsCovers = on ? 1 : 0; }
  static const char* FillWord(int fill, int format);

  void Write(SProjectStream& out, int level, int format, double lengthFactor = 1.0) const override;
  bool Read(SFile& file, SProjectErrorManager& errors, long long& level) override;

private:
  bool ReadToLevel(SFile& file, SProjectErrorManager& errors);

  int itsViaFill = Legacy;
  unsigned char itsCovers = 0;
};

#endif

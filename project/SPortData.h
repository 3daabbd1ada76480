#ifndef SPORTDATA_H
#define SPORTDATA_H

#include "SEdge.h"
#include "SGroundSettings.h"
#include "SPoint.h"
#include "SString.h"

#include <memory>
#include <vector>

class SCoupledGroup;
class SRefPlane;

// Everything a port carries besides its place in the tree. Inductance in nH, capacitance
// in pF, resistance and reactance in ohms. Not copied: the port owns its plane, and ports
// are enclosures, which aren't copied either.
class SPortData : public SEdge, public SGroundSettings {
public:
  enum Type { Standard = 0, AutoGround = 1, CoCalibrated = 2, DeltaGap = 3, BoxWall = 4, ViaPort = 5, Component = 6 };
  enum GroundReference { GroundAuto = 0, GroundBoxCover = 1, GroundPolygonEdge = 2, GroundPolygonPlane = 3,
                         GroundFloating = 4, GroundHidden = 5 };
  enum Direction { DirectionAuto = 0, DirectionAbove = 1, DirectionBelow = 2, DirectionBoth = 3 };
  enum TerminalWidth { OneCell = 0, FeedlineWidth = 1, CustomWidth = 2 };

  SPortData();
  SPortData(const SPortData&) = delete;
  SPortData& operator=(const SPortData&) = delete;
  virtual ~SPortData();

  int GetType() const { return itsType; }
  void SetType(int type) { itsType = type; }
  bool IsAutoGround() const { return itsType == AutoGround; }
  // The report text: "Standard", "Autognd", "Co-calibrated" ...
  static const char* TypeText(int type);

  // An empty list counts as the one number 0.
  size_t GetNumberCount() const { return itsIndices.size(); }
  int GetNumber(size_t i = 0) const { return i < itsIndices.size() ? itsIndices[i] : 0; }
  void SetNumber(int number) { itsIndices.assign(1, number); }
  void AddNumber(int number) { itsIndices.push_back(number); }
  const std::vector<int>& GetNumbers() const { return itsIndices; }
  void SetNumbers(const std::vector<int>& numbers) { itsIndices = numbers; }

  double GetResistance() const { return itsResistance; }
  void SetResistance(double ohms) { itsResistance = ohms; }
  double GetReactance() const { return itsReactance; }
  void SetReactance(double ohms) { itsReactance = ohms; }
  double GetInductance() const { return itsInductance; }
  void SetInductance(double nH) { itsInductance = nH; }
  double GetCapacitance() const { return itsCapacitance; }
  void SetCapacitance(double pF) { itsCapacitance = pF; }

  // The port owns its plane; null when it has none.
  SRefPlane* GetRefPlane() const { return itsRefPlane.get(); }
  void SetRefPlane(SRefPlane* plane);

  // The stored position; SPort answers the middle of its edge instead.
  const SPoint& GetStoredPosition() const { return itsPosition; }
  void SetPosition(const SPoint& p) { itsPosition = p; }

  // The group name as read; an automatic group has none ("Auto" in the file).
  const SString& GetGroupName() const { return itsGroupName; }
  void SetGroupName(const SString& name) { itsGroupName = name; }
  bool IsAutomaticGroup() const { return itsAutomaticGroup != 0; }
  void SetAutomaticGroup(bool on) { itsAutomaticGroup = on ? 1 : 0; }
  bool IsDiagonalAllowed() const { return itsDiagonalAllowed != 0; }
  void SetDiagonalAllowed(bool on) { itsDiagonalAllowed = on ? 1 : 0; }
  // Types that may be drawn on a diagonal edge.
  bool CanBeDiagonal() const {
    return itsType == Standard || itsType == DeltaGap || itsType == BoxWall || itsType == ViaPort;
  }
  bool IsPolarityReversed() const { return itsPolarityReversed != 0; }
  void SetPolarityReversed(bool on) { itsPolarityReversed = on ? 1 : 0; }
  bool IsSimple() const { return itsSimple != 0; }
  void SetSimple(bool on) { itsSimple = on ? 1 : 0; }
  // Not owned: groups belong to the circuit.
  SCoupledGroup* GetGroup() const { return itsGroup; }
  void SetGroup(SCoupledGroup* group) { itsGroup = group; }

  // File words. Ground reference: AUTO BOX EDGE POLY FLOAT HIDDEN; direction: AUTO ABOVE
  // BELOW BOTH; terminal width: CELL FEED CUST. Readers answer -1 for a word they don't know.
  static const char* GroundWord(int code);
  static int GroundFromWord(const SString& word);
  static const char* DirectionWord(int code);
  static int DirectionFromWord(const SString& word);
  static const char* WidthWord(int code);
  static int WidthFromWord(const SString& word);
  // Ground references whose file form names a direction.
  static bool HasDirection(int ground) { return ground == GroundBoxCover || ground == GroundPolygonPlane; }

protected:
  std::vector<int> itsIndices;
  int itsType = Standard;
  double itsResistance = 50.0;
  double itsReactance = 0.0;
  double itsInductance = 0.0;
  double itsCapacitance = 0.0;
  std::unique_ptr<SRefPlane> itsRefPlane;
  SPoint itsPosition;
  SString itsGroupName;
  unsigned char itsAutomaticGroup = 0;
  unsigned char itsDiagonalAllowed = 0;
  unsigned char itsPolarityReversed = 0;
  unsigned char itsSimple = 0;
  SCoupledGroup* itsGroup = nullptr;
};

#endif

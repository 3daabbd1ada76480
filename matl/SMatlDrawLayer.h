#ifndef SMATLDRAWLAYER_H
#define SMATLDRAWLAYER_H

#include "SMatlLevel.h"

// Second base of the entries that lie on a level: the drawing layer's name, its
// color/pattern and its level.
class SMatlDrawLayer {
public:
  explicit SMatlDrawLayer(bool topAllowed = false) : itsLevel(topAllowed) {}
  virtual ~SMatlDrawLayer() {}

  const SString& GetLayerName() const { return itsLayerName; }
  void SetLayerName(const SString& name) { itsLayerName = name; }
  int GetPattern() const { return itsPattern; }
  void SetPattern(int pattern) { itsPattern = pattern; }
  const SMatlLevel& GetLevel() const { return itsLevel; }
  SMatlLevel& Level() { return itsLevel; }
  int GetLevelNumber() const { return itsLevel.GetNumber(); }
  void SetLevelNumber(int number) { itsLevel.SetNumber(number); }
  bool IsOnGround() const { return itsLevel.IsGround(); }

  bool IsSameDrawLayer(const SMatlDrawLayer& other) const {
    return itsLayerName == other.itsLayerName && itsPattern == other.itsPattern && itsLevel == other.itsLevel;
  }

protected:
  SString itsLayerName = "Unnamed";
  int itsPattern = 0;
  SMatlLevel itsLevel;
};

#endif

#ifndef SMATLINTERFACE_H
#define SMATLINTERFACE_H

#include "SString.h"

class SProject;

// What an entry of a material file asks of the file that owns it (SMatl).
class SMatlInterface {
public:
  virtual ~SMatlInterface() {}

  // The dielectrics read so far.
  virtual int GetNumDielectrics() const = 0;
  // The count less one: the level of the lowest dielectric, where "GND" lies.
  virtual int GetNumDielectricsLessOne() const = 0;
  // The highest level number among the dielectrics; -1 without any.
  virtual int GetHighestDielectricLevel() const = 0;
  // The name of the file being read: messages name it, and a name holding ".matl" makes
  // some metal names restricted.
  virtual SString GetInputFileName() const = 0;
  // The owner's scratch project, in which variables are set and expressions evaluated.
  virtual SProject* GetScratchProject() const = 0;
  // True while a file is read: duplicate checks are on.
  virtual bool IsChecksOn() const = 0;
  // False when a color entry of that layer name is already held.
  virtual bool IsColorLayerNameUnique(const SString& name) const = 0;
};

#endif

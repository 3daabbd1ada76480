#ifndef SEQNOWNER_H
#define SEQNOWNER_H

#include "SString.h"

class SVarSource;

// What an equation asks of the object that owns it (a project). Every answer has a
// default, so an equation without an owner still evaluates.
class SEqnOwner {
public:
  virtual ~SEqnOwner() = default;
  // A box property by its SEqnProperty::Code; false when the owner has no such value (then 0).
  virtual bool GetEquationProperty(int /*code*/, double& /*value*/) const { return false; }
  // table1 / table1c / table2: the table by the name given as a string operand; mode 'l' or 'c';
  // dimensions 1 or 2. False gives "illegal table lookup".
  virtual bool LookupTable(const SString& /*name*/, char /*mode*/, int /*dimensions*/, double /*x*/, double /*y*/,
                           double& /*value*/) const {
    return false;
  }
  // m2p, h2p, p2m, p2h by function code 41..44; false gives "illegal table lookup".
  virtual bool MapInductorTable(int /*functionCode*/, double /*in*/, double& /*out*/) const { return false; }
  // A named variable of the owner, or null.
  virtual SVarSource* FindVariableSource(const SString& /*name*/) { return nullptr; }
  // Hertz per unit of the owner's frequency unit.
  virtual double GetFrequencyFactor() const { return 1.0; }
};

#endif

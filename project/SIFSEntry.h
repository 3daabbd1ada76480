#ifndef SIFSENTRY_H
#define SIFSENTRY_H

#include "SBaseSweep.h"

// Searches of a response: network, parameter, point counts, start, stop, resolution.
class SIFSEntry : public SBaseSweep {
  SCOLLECTABLE_DECLARE(SIFSEntry)
public:
  SString itsNetwork = "GEO";
  SString itsParameter = "S11";
  int itsPoints = 0;
  int itsMaximum = 0;
  SDoubleValid itsResolution;

  bool Read(SFile& file) override;
  void Write(SProjectStream& out) const override;
  void GetFrequencies(std::vector<double>& out) const override;
  void Scale(double ratio) override;
  // The port numbers of the parameter ("S21" gives 2 and 1); a port 0 counts as 1.
  void GetPorts(int& first, int& second) const;
};

#endif

#ifndef SMETALELEMENT_H
#define SMETALELEMENT_H

#include "SEnclosure.h"
#include "SString.h"

#include <vector>

class SFile;
class SMaterialTypeData;
class SProjectErrorManager;
class SProjectStream;

// A parametric element among the polygons of GEO ("MET ELM" or "BRI ELM"): the shape lines,
// per material a "MAT" line and a polygon line, and "END". The drawing tools make them and
// the shapes' grammar isn't ours, so every line is kept as read; only the material number of
// a polygon line follows its type, whose number may change when the types are written.
class SMetalElement : public SEnclosure {
  SCOLLECTABLE_DECLARE(SMetalElement)
public:
  SMetalElement() {}

  bool IsBrick() const { return itsBrick; }
  // From the "MET ELM" line, the current one, to the element's END line, where the file
  // stands afterwards. `level` is the first polygon line's.
  bool Read(SFile& file, SProjectErrorManager& errors, long long& level);
  void Write(SProjectStream& out) const;

  size_t GetNumberOfPolygonLines() const;
  // The material numbers as read and the types they stand for; a null type is "Lossless"
  // or "Air".
  int GetFileMaterial(size_t polygonLine) const;
  SMaterialTypeData* GetMaterial(size_t polygonLine) const;
  void SetMaterial(size_t polygonLine, SMaterialTypeData* type);
  bool UsesMaterial(const SMaterialTypeData* type) const;

private:
  struct SLine {
    SString itsText;
    // A polygon line is kept as the text ahead of its material field and behind it.
    bool itsPolygon = false;
    SString itsAfter;
    int itsFileMaterial = 0;
    SMaterialTypeData* itsType = nullptr;
  };

  bool ReadPolygonLine(SFile& file, SProjectErrorManager& errors, SLine& line, long long& level);
  SLine* PolygonLine(size_t index);
  const SLine* PolygonLine(size_t index) const;

  bool itsBrick = false;
  // The "MET ELM" line itself, then every line up to END.
  std::vector<SLine> itsLines;
};

#endif

#include "SXmatl.h"

#include "SMatlClassID.h"
#include "SMatlUtil.h"

SCOLLECTABLE_DEFINE(SXmatl, SID_XMATL, &SMatl::staticTypeInfo())

SXmatl::SXmatl() {}

SXmatl::~SXmatl() {}

void SXmatl::Reset() {
  ClearEntries();
  itsData = SXmatlData();
  Comments().Clear();
  SMatlUnit& units = Units();
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension) {
    units.SetCurrent(dimension, 0);
    units.SetFile(dimension, 0);
    units.SetSeen(dimension, false);
  }
  itsPrivencSeen = false;
  itsHasPrivate = false;
  itsSimplifiedView = false;
  itsSimplifiedReady = false;
}

SString SXmatl::Where(long long line) const { return GetInputFileName() + ", line " + SString::number(line); }

void SXmatl::Clone(const SXmatl& other) {
  if (&other == this) return;
  Reset();
  SetInputFileName(other.GetInputFileName());
  SetOutputFileName(other.GetOutputFileName());
  SetReadOk(other.IsReadOk());
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension) {
    Units().SetCurrent(dimension, other.GetUnits().GetCurrent(dimension));
    Units().SetFile(dimension, other.GetUnits().GetFile(dimension));
    Units().SetSeen(dimension, other.GetUnits().IsSeen(dimension));
  }
  for (const SString& line : other.GetComments().GetLines()) Comments().AddLine(line);
  itsData = other.itsData;
  itsEncryptOnWrite = other.itsEncryptOnWrite;
  itsAllowDecrypt = other.itsAllowDecrypt;
  itsPrivencSeen = other.itsPrivencSeen;
  itsHasPrivate = other.itsHasPrivate;
  itsKeyFile = other.itsKeyFile;
  itsKeyText = other.itsKeyText;
  // The simplified lists are the stackup's: made again rather than copied.
  if (other.itsSimplifiedReady) SimplifyVelTech();
}

// ---- units

void SXmatl::ConvertUnits() {
  int before[SMatlUtil::DimensionCount];
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension)
    before[dimension] = GetUnits().GetFile(dimension);
  SMatl::ConvertUnits();
  for (int dimension = SMatlUtil::Length; dimension <= SMatlUtil::SheetResistance; ++dimension) {
    const int after = GetUnits().GetFile(dimension);
    if (after == before[dimension]) continue;
    const double factor = SMatlUtil::ConversionFactor(dimension, before[dimension], after);
    for (SXmatlCond& conductor : itsData.conductors) conductor.Scale(dimension, factor);
    if (dimension == SMatlUtil::Length) {
      for (SXmatlDiel& diel : itsData.diels) {
        for (double* value : {&diel.thickness, &diel.sidewallThickness, &diel.topwallThickness,
                              &diel.bottomwallThickness})
          *value *= factor;
        for (SXmatlLayer& layer : diel.layers) layer.thickness *= factor;
      }
      for (SXmatlMetalModel& model : itsData.metalModels) {
        model.topRoughness *= factor;
        model.bottomRoughness *= factor;
      }
      for (SXmatlViaModel& model : itsData.viaModels) model.wallThickness *= factor;
      for (SXmatlMesh& mesh : itsData.meshes) mesh.maxLength *= factor;
      continue;
    }
    if (dimension != SMatlUtil::Conductivity && dimension != SMatlUtil::Resistivity) continue;
    const bool resistivity = dimension == SMatlUtil::Resistivity;
    for (SXmatlDielMatl& material : itsData.dielectrics)
      if (material.resistivity == resistivity)
        for (SXmatlAxis& axis : material.axis)
          if (!axis.condInf) axis.cond *= factor;
  }
}

// ---- comparison

namespace {

template <class T> std::vector<const T*> Flagged(const std::vector<T>& list, bool isPrivate) {
  std::vector<const T*> result;
  for (const T& entry : list)
    if (entry.isPrivate == isPrivate) result.push_back(&entry);
  return result;
}

template <class T> bool SameFlagged(const std::vector<T>& a, const std::vector<T>& b, bool isPrivate) {
  const std::vector<const T*> x = Flagged(a, isPrivate);
  const std::vector<const T*> y = Flagged(b, isPrivate);
  if (x.size() != y.size()) return false;
  for (size_t i = 0; i < x.size(); ++i)
    if (!(*x[i] == *y[i])) return false;
  return true;
}

std::vector<const SXmatlCond*> Conductors(const std::vector<SXmatlCond>& list, bool isPrivate) {
  std::vector<const SXmatlCond*> result;
  for (const SXmatlCond& conductor : list)
    if (conductor.IsPrivate() == isPrivate) result.push_back(&conductor);
  return result;
}

class SReport {
public:
  explicit SReport(QStringList* lines) : itsLines(lines) {}
  void Add(const char* label, const char* message) {
    itsSame = false;
    if (itsLines) itsLines->append(QString("%1: %2").arg(QLatin1String(label), QLatin1String(message)));
  }
  void Check(bool same, const char* label, const char* message) {
    if (!same) Add(label, message);
  }
  bool IsSame() const { return itsSame; }

private:
  QStringList* itsLines;
  bool itsSame = true;
};

void CompareDielectrics(const SXmatlData& a, const SXmatlData& b, bool isPrivate, SReport& report) {
  const char* label = isPrivate ? "# Private Store Dielectric Materials" : "# Public Store Dielectric Materials";
  const std::vector<const SXmatlDielMatl*> x = Flagged(a.dielectrics, isPrivate);
  const std::vector<const SXmatlDielMatl*> y = Flagged(b.dielectrics, isPrivate);
  if (x.size() != y.size()) {
    report.Add(label, isPrivate ? "Number of Private dielectric materials does not match."
                                : "Number of Public dielectric materials does not match.");
    return;
  }
  static const char* const kHas[] = {"Dielectric materials Has XYZ boolean does not match",
                                     "Dielectric materials Has XY boolean does not match",
                                     "Dielectric materials Has X boolean does not match",
                                     "Dielectric materials Has Y boolean does not match",
                                     "Dielectric materials Has Z boolean does not match"};
  for (const SXmatlDielMatl* material : x) {
    const SXmatlDielMatl* match = nullptr;
    for (const SXmatlDielMatl* other : y)
      if (other->name == material->name) match = other;
    if (!match) {
      report.Add(label, "Could not find matching dielectric material");
      continue;
    }
    for (int params = 0; params < SXmatlDielMatl::ParamsCount; ++params)
      report.Check(material->has[params] == match->has[params], label, kHas[params]);
    report.Check(material->anisotropic == match->anisotropic, label,
                 "Dielectric materials Is Anisotropic boolean does not match");
    report.Check(*material == *match, label, "Dielectric material values do not match.");
  }
}

void CompareConductors(const SXmatlData& a, const SXmatlData& b, bool isPrivate, SReport& report) {
  const char* label = isPrivate ? "# Private Stored Conductor Materials" : "# Public Stored Conductor Materials";
  const std::vector<const SXmatlCond*> x = Conductors(a.conductors, isPrivate);
  const std::vector<const SXmatlCond*> y = Conductors(b.conductors, isPrivate);
  if (x.size() != y.size()) {
    report.Add(label, isPrivate ? "Number of Private conductor materials does not match."
                                : "Number of Public conductor materials does not match.");
    return;
  }
  for (const SXmatlCond* conductor : x) {
    const SXmatlCond* match = nullptr;
    for (const SXmatlCond* other : y)
      if (other->GetName() == conductor->GetName()) match = other;
    if (!match) {
      report.Add(label, "Could not find matching conductor material");
      continue;
    }
    if (match->GetKind() != conductor->GetKind()) {
      report.Add(label, "Conductor material types do not match");
      continue;
    }
    report.Check(conductor->IsSame(*match), label, "Conductor material values do not match.");
  }
}

// What both the public and the private blocks hold besides materials.
void CompareBlock(const SXmatlData& a, const SXmatlData& b, bool isPrivate, SReport& report) {
  CompareDielectrics(a, b, isPrivate, report);
  CompareConductors(a, b, isPrivate, report);
  const char* block = isPrivate ? "# Private Stackup" : "# Public Stackup";
  report.Check(SameFlagged(a.diels, b.diels, isPrivate), block, "Dielectric layers do not match.");
  report.Check(SameFlagged(a.vias, b.vias, isPrivate), block, "Via layers do not match.");
  for (const auto& cover : {std::make_pair(&a.top, &b.top), std::make_pair(&a.bottom, &b.bottom)}) {
    const bool inBlock = cover.first->isPrivate == isPrivate || cover.second->isPrivate == isPrivate;
    report.Check(!inBlock || *cover.first == *cover.second, block, "Covers do not match.");
  }
  report.Check(SameFlagged(a.biases, b.biases, isPrivate), "Bias definitions", "Bias definitions do not match.");
  report.Check(SameFlagged(a.dielMaps, b.dielMaps, isPrivate), "Dielectric maps", "Dielectric maps do not match.");
}

} // namespace

bool SXmatl::IsSameXmatl(const SXmatl& other, QStringList* lines) const {
  SReport report(lines);
  const SXmatlData& a = itsData;
  const SXmatlData& b = other.itsData;
  report.Check(a.version == b.version, "Version", "Version values do not match.");
  report.Check(a.sources == b.sources, "Source entries", "Source entries do not match.");
  report.Check(GetUnits().IsEqual(other.GetUnits()), "Unit entries", "Unit values do not match.");
  report.Check(a.comments == b.comments, "Comment entries", "Comment lines do not match.");
  report.Check(a.diels.size() == b.diels.size(), "MAXLEVELS", "Max Dielectric level values do not match.");
  if (Flagged(a.variables, false).size() != Flagged(b.variables, false).size())
    report.Add("# public variables", "Number of public variables do not match.");
  else
    report.Check(SameFlagged(a.variables, b.variables, false), "# public variables",
                 "Public variable values do not match.");
  report.Check(SameFlagged(a.meshes, b.meshes, false), "Mesh definitions", "Mesh definitions do not match.");
  report.Check(SameFlagged(a.metalModels, b.metalModels, false) && SameFlagged(a.viaModels, b.viaModels, false),
               "Model definitions", "Model definitions do not match.");
  CompareBlock(a, b, false, report);
  if (itsHasPrivate && other.itsHasPrivate) {
    report.Check(SameFlagged(a.variables, b.variables, true), "# private variables",
                 "Private variable values do not match.");
    CompareBlock(a, b, true, report);
  }
  return report.IsSame();
}

bool SXmatl::IsEqual(const SMatlMaterial& other) const {
  const SXmatl* xmatl = dynamic_cast<const SXmatl*>(&other);
  return xmatl && IsSameXmatl(*xmatl);
}

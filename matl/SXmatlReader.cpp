#include "SXmatlReader.h"

#include "SMatlMetalData.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SMatlViaDrawLayer.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"
#include "SXmatl.h"
#include "SXmatlCipher.h"

#include <QFile>
#include <QRegularExpression>
#include <QXmlStreamReader>


namespace {

const int kCannotOpen = 20504;
const int kNotTechnology = 20505;
const int kBadSource = 20506;
const int kBadUnits = 20507;
const int kBadComments = 20508;
const int kBadPrivateMaterials = 20510;
const int kBadPrivateStackup = 20513;
const int kBadPrivateDielMap = 20515;
const int kBadVariable = 20544;
const int kBadMesh = 20545;
const int kBadMetalModel = 20546;
const int kBadViaModel = 20547;
const int kBadBias = 20548;
const int kBadBrickLayer = 20550;
const int kBadXml = 20552;
const int kNoKey = 20555;
const int kNotDeciphered = 20556;
const int kBadAnisotropic = 20566;
const int kBadBottomwall = 20565;

// The failures of a layer's attributes, in the order ignore, name, material, model,
// layer_name, thickness, bias, mesh, color_pattern, direction, from, to, map, gds_stream,
// gds_datatype; 0 where the kind has no such attribute.
enum LayerAttribute { AIgnore, AName, AMaterial, AModel, ALayerName, AThickness, ABias, AMesh, APattern, ADirection,
                      AFrom, ATo, AMap, AStream, ADatatype, ACount };
const int kMetalFailures[ACount] = {20579, 20580, 20581, 20582, 20583, 20584, 20585,
                                    20586, 20587, 20588, 0,     0,     20589, 20590, 20591};
const int kViaFailures[ACount] = {20617, 20618, 20583, 20620, 20621, 0,     20622,
                                  20623, 20624, 0,     20625, 20626, 20627, 20628, 20629};
const int kBrickFailures[ACount] = {kBadBrickLayer, kBadBrickLayer, kBadBrickLayer, 0, kBadBrickLayer,
                                    0,              0,              kBadBrickLayer, kBadBrickLayer, 0,
                                    0,              0,              kBadBrickLayer, kBadBrickLayer, kBadBrickLayer};

const char* const kVarUnits[] = {"LENG", "COND", "RES", "RSVY", "SHRES", "FREQ", "IND", "CAP", "TEMP"};

const char* const kMeshTypes[] = {"metal", "via", "brick"};
const int kMeshTypeCodes[] = {SXmatlMesh::Metal, SXmatlMesh::Via, SXmatlMesh::Brick};
const char* const kMetalFills[] = {"staircase", "conformal", "diagonal"};
const int kMetalFillCodes[] = {SMatlMetalData::Staircase, SMatlMetalData::Conformal, SMatlMetalData::Diagonal};
const char* const kViaFills[] = {"Default", "Ring", "Full", "Vertices", "Center", "Bar"};
const int kViaFillCodes[] = {SMatlViaDrawLayer::DefaultViaFill, SMatlViaDrawLayer::Ring,   SMatlViaDrawLayer::Full,
                             SMatlViaDrawLayer::Vertices,       SMatlViaDrawLayer::Center, SMatlViaDrawLayer::Bar};
const char* const kMetalModels[] = {"normal", "thickmetal", "roughmetal", "resistor", "Rdc/Rrf", "general", "sense"};
const int kMetalModelCodes[] = {SMatlMetalData::Normal,   SMatlMetalData::ThickMetalModel, SMatlMetalData::RoughMetal,
                                SMatlMetalData::Resistor, SMatlMetalData::RdcRrf,          SMatlMetalData::General,
                                SMatlMetalData::SenseMetal};
const char* const kViaModels[] = {"volume", "surface", "array"};
const int kViaModelCodes[] = {SMatlViaDrawLayer::Volume, SMatlViaDrawLayer::Surface, SMatlViaDrawLayer::Array};
const char* const kCrossSections[] = {"thin", "thick"};
const int kCrossSectionCodes[] = {0, 1};
const char* const kVolumeTypes[] = {"wall", "solid"};
const int kVolumeTypeCodes[] = {0, 1};
const char* const kOnOff[] = {"on", "off"};
const int kOnOffCodes[] = {1, 0};

template <size_t N> int Count(const char* const (&)[N]) { return static_cast<int>(N); }

bool Is(const QStringRef& name, const char* what) { return name == QLatin1String(what); }

} // namespace

SXmatlReader::SXmatlReader(SXmatl& target, QXmlStreamReader& xml, const SString& fileName)
    : itsTarget(target), itsXml(xml), itsFileName(fileName) {}

// ---- failures

long long SXmatlReader::Line() const { return itsXml.lineNumber(); }

bool SXmatlReader::Fail(int number) { return FailAt(number, Line()); }

bool SXmatlReader::FailAt(int number, long long line, const SString& detail) {
  if (itsReported) return false;
  itsReported = true;
  SString text;
  const SString where = itsFileName + ", line " + SString::number(line);
  VeloraFormatMessage(text, number, where.data());
  if (!detail.isEmpty()) text += SString(" (") + detail + ")";
  SMatlReporting::Instance().ReportError(text, number);
  // Stops every loop above this element.
  if (!itsXml.hasError()) itsXml.raiseError(QStringLiteral("read stopped"));
  return false;
}

bool SXmatlReader::FailXml() {
  if (itsReported) return false;
  const SString detail = itsXml.hasError() ? SString(itsXml.errorString()) : SString("the document ended early");
  return FailAt(kBadXml, Line(), detail);
}

// ---- attributes

bool SXmatlReader::Has(const char* name) const { return itsAttributes.hasAttribute(QLatin1String(name)); }

SString SXmatlReader::Text(const char* name) const {
  return SString(itsAttributes.value(QLatin1String(name)).toString());
}

bool SXmatlReader::Required(const char* name, SString& value, int failure) {
  if (!Has(name) || Text(name).isEmpty()) return Fail(failure);
  value = Text(name);
  return true;
}

bool SXmatlReader::NotEmpty(const char* name, SString& value, int failure) {
  if (!Has(name)) return true;
  if (Text(name).isEmpty()) return Fail(failure);
  value = Text(name);
  return true;
}

bool SXmatlReader::Real(const char* name, double& value, int failure, bool required, double minimum) {
  if (!Has(name)) return required ? Fail(failure) : true;
  double parsed = 0.0;
  if (!SMatlUtil::ParseReal(Text(name).stripped(), parsed) || parsed < minimum) return Fail(failure);
  value = parsed;
  return true;
}

bool SXmatlReader::RealOrInf(const char* name, double& value, bool& infinite, int failure, bool required) {
  if (Has(name) && Text(name).stripped().compare("INF", true) == 0) {
    infinite = true;
    return true;
  }
  if (!Real(name, value, failure, required)) return false;
  if (Has(name)) infinite = false;
  return true;
}

bool SXmatlReader::Int(const char* name, int& value, int failure, int minimum) {
  if (!Has(name)) return true;
  int parsed = 0;
  if (!SMatlUtil::ParseInt(Text(name).stripped(), parsed) || parsed < minimum) return Fail(failure);
  value = parsed;
  return true;
}

bool SXmatlReader::Flag(const char* name, bool& value, int failure, const char* yes, const char* no) {
  if (!Has(name)) return true;
  const SString text = Text(name).stripped();
  if (text.compare(yes, true) == 0)
    value = true;
  else if (text.compare(no, true) == 0)
    value = false;
  else
    return Fail(failure);
  return true;
}

bool SXmatlReader::Word(const char* name, int& value, int failure, const char* const* words, const int* codes,
                        int count) {
  if (!Has(name)) return true;
  const SString text = Text(name).stripped();
  for (int i = 0; i < count; ++i)
    if (text.compare(words[i], true) == 0) {
      value = codes[i];
      return true;
    }
  return Fail(failure);
}

// ---- the document

bool SXmatlReader::ReadFile() {
  if (!itsXml.readNextStartElement()) return itsXml.hasError() ? FailXml() : FailAt(kNotTechnology, Line());
  if (!Is(itsXml.name(), "technology_file")) {
    const long long line = Line();
    itsXml.raiseError(QStringLiteral("Not a proper velora technology material file"));
    return FailAt(kNotTechnology, line, SString(itsXml.errorString()));
  }
  itsAttributes = itsXml.attributes();
  SXmatlData& data = itsTarget.itsData;
  if (!Required("version", data.version, kNotTechnology)) return false;
  if (Text("has_private").compare("true", true) == 0) itsTarget.itsHasPrivate = true;

  while (itsXml.readNextStartElement()) {
    const QStringRef name = itsXml.name();
    bool ok = true;
    if (Is(name, "source"))
      ok = ReadSources();
    else if (Is(name, "units"))
      ok = ReadUnits();
    else if (Is(name, "comments"))
      ok = ReadComments();
    else if (Is(name, "public"))
      ok = ReadBlock(false, false);
    else if (Is(name, "private")) {
      itsTarget.itsHasPrivate = true;
      ok = ReadBlock(true, false);
    } else if (Is(name, "privenc"))
      ok = ReadPrivenc();
    else
      itsXml.skipCurrentElement();
    if (!ok) return false;
  }
  // Whatever follows the root must still be well-formed.
  while (!itsXml.atEnd()) itsXml.readNext();
  if (itsXml.hasError()) return FailXml();
  return true;
}

bool SXmatlReader::ReadSources() {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "src")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    SString name;
    if (!Required("name", name, kBadSource) || !Has("value")) return Fail(kBadSource);
    const SString value = Text("value");
    VeloraTrace(4, TRACE_GENERAL, "SRC: %s = %s", name.data(), value.data());
    itsTarget.itsData.sources.emplace_back(name, value);
    itsXml.skipCurrentElement();
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadUnits() {
  static const char* const kNames[SMatlUtil::DimensionCount] = {"lunit", "cunit", "runit", "srunit", "tempunit"};
  itsAttributes = itsXml.attributes();
  SMatlUnit& units = itsTarget.Units();
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension) {
    if (!Has(kNames[dimension])) continue;
    const int code = SMatlUtil::UnitCode(dimension, Text(kNames[dimension]).stripped());
    if (code < 0) return Fail(kBadUnits);
    units.SetCurrent(dimension, code);
    units.SetFile(dimension, code);
    units.SetSeen(dimension, true);
  }
  itsXml.skipCurrentElement();
  return true;
}

bool SXmatlReader::ReadComments() {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "line")) {
      itsXml.skipCurrentElement();
      continue;
    }
    const long long line = Line();
    const QString text = itsXml.readElementText();
    if (itsXml.hasError()) return FailAt(kBadComments, line);
    if (itsTarget.IsKeepCommentsOff()) continue;
    itsTarget.itsData.comments.push_back(SString(text));
    itsTarget.Comments().AddLine(SString(text));
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadBlock(bool isPrivate, bool enciphered) {
  while (itsXml.readNextStartElement()) {
    const QStringRef name = itsXml.name();
    bool ok = true;
    int failure = 0;
    if (Is(name, "variables") && !isPrivate)
      ok = ReadVariables(isPrivate);
    else if (Is(name, "materials")) {
      ok = ReadMaterials(isPrivate);
      failure = kBadPrivateMaterials;
    } else if (Is(name, "mesh_defs") && !isPrivate)
      ok = ReadMeshDefs(isPrivate);
    else if (Is(name, "metal_model_defs") && !isPrivate)
      ok = ReadModelDefs(isPrivate);
    else if (Is(name, "stackup")) {
      ok = ReadStackup(isPrivate);
      failure = kBadPrivateStackup;
    } else if (Is(name, "bias_defs") && isPrivate) {
      ok = ReadBiasDefs(isPrivate);
      failure = kBadPrivateMaterials;
    } else if (Is(name, "diel_map") && isPrivate) {
      ok = ReadDielMaps(isPrivate);
      failure = kBadPrivateDielMap;
    } else
      itsXml.skipCurrentElement();
    if (!ok) {
      // The enciphered part says which of its blocks failed, after the failure itself.
      if (enciphered && failure) {
        SString text;
        VeloraFormatMessage(text, failure, itsFileName.data());
        SMatlReporting::Instance().ReportError(text, failure);
      }
      return false;
    }
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadPrivenc() {
  itsTarget.itsPrivencSeen = true;
  if (!itsTarget.itsAllowDecrypt) {
    itsXml.skipCurrentElement();
    return !itsXml.hasError() || FailXml();
  }
  const long long start = Line();
  QStringList chunks;
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "enc")) {
      itsXml.skipCurrentElement();
      continue;
    }
    chunks.append(itsXml.readElementText().trimmed());
  }
  if (itsXml.hasError()) return FailXml();
  if (!itsTarget.itsKeyFile.isEmpty()) {
    SString keyText;
    if (!SXmatlCipher::ReadKeyText(itsTarget.itsKeyFile, keyText)) return FailAt(kNoKey, start);
    itsTarget.itsKeyText = keyText;
  }
  if (itsTarget.itsKeyText.isEmpty()) return FailAt(kNoKey, start);
  QByteArray plain;
  if (!SXmatlCipher::DecryptData(SXmatlCipher::FromHexChunks(chunks), itsTarget.itsKeyText, plain))
    return FailAt(kNotDeciphered, start);
  QXmlStreamReader inner(plain);
  SXmatlReader reader(itsTarget, inner, itsFileName + " (private part)");
  if (!reader.ReadPrivencDocument()) {
    itsReported = true;
    itsXml.raiseError(QStringLiteral("read stopped"));
    return false;
  }
  itsTarget.itsHasPrivate = true;
  return true;
}

bool SXmatlReader::ReadPrivencDocument() {
  if (!itsXml.readNextStartElement() || !Is(itsXml.name(), "privenc")) return FailAt(kNotDeciphered, Line());
  if (!ReadBlock(true, true)) return false;
  while (!itsXml.atEnd()) itsXml.readNext();
  return !itsXml.hasError() || FailXml();
}

// ---- public and private content

bool SXmatlReader::ReadVariables(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "var")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    SXmatlVar var;
    var.line = Line();
    var.isPrivate = isPrivate;
    if (!Required("name", var.name, kBadVariable) || !Required("value", var.value, kBadVariable)) return false;
    if (Has("units")) {
      var.units = Text("units").stripped().upper();
      bool known = false;
      for (const char* word : kVarUnits) known = known || var.units == word;
      if (!known) return Fail(kBadVariable);
    }
    itsTarget.itsData.variables.push_back(var);
    itsXml.skipCurrentElement();
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadMaterials(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    bool ok = true;
    if (Is(itsXml.name(), "conductor"))
      ok = ReadConductor(isPrivate);
    else if (Is(itsXml.name(), "dielectric"))
      ok = ReadDielectric(isPrivate);
    else
      itsXml.skipCurrentElement();
    if (!ok) return false;
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadConductor(bool isPrivate) {
  itsAttributes = itsXml.attributes();
  SXmatlCond conductor;
  conductor.SetLine(Line());
  conductor.SetPrivate(isPrivate);
  SString name;
  if (!Required("name", name, 20518)) return false;
  conductor.SetName(name);
  const int kind = SXmatlCond::KindOf(Text("condspec").stripped().lower());
  if (kind < 0) return Fail(20519);
  conductor.SetKind(kind);
  const int values = SXmatlCond::Values(kind);
  double value = 0.0;
  bool infinite = false;
  if (values & SXmatlCond::ValueCond) {
    if (!RealOrInf("cond", value, infinite, 20520, true)) return false;
    conductor.itsCondIsInf = infinite;
    conductor.itsConductivity.SetValue(infinite ? 0.0 : value);
  }
  const struct {
    int bit;
    const char* name;
    int failure;
    SValueVarDouble SMetalTypeData::*field;
  } kFields[] = {{SXmatlCond::ValueRsvy, "rsvy", 20521, &SMetalTypeData::itsConductivity},
                 {SXmatlCond::ValueShRes, "shres", 20522, &SMetalTypeData::itsConductivity},
                 {SXmatlCond::ValueRpv, "rpv", 20523, &SMetalTypeData::itsConductivity},
                 {SXmatlCond::ValueRdc, "rdc", 20575, &SMetalTypeData::itsRdc},
                 {SXmatlCond::ValueRrf, "rrf", 20576, &SMetalTypeData::itsRrf},
                 {SXmatlCond::ValueXdc, "xdc", 20577, &SMetalTypeData::itsXdc},
                 {SXmatlCond::ValueLs, "ls", 20578, &SMetalTypeData::itsLs}};
  for (const auto& field : kFields) {
    if (!(values & field.bit)) continue;
    if (!Real(field.name, value, field.failure, true)) return false;
    (conductor.*field.field).SetValue(value);
  }
  itsTarget.itsData.conductors.push_back(conductor);
  itsXml.skipCurrentElement();
  return true;
}

bool SXmatlReader::ReadDielectric(bool isPrivate) {
  itsAttributes = itsXml.attributes();
  SXmatlDielMatl material;
  material.line = Line();
  material.isPrivate = isPrivate;
  if (!Required("name", material.name, 20536) || !Flag("anisotropic", material.anisotropic, kBadAnisotropic, "yes", "no"))
    return false;
  material.resistivity = Text("cond_res").stripped().compare("rsvy", true) == 0;
  bool axisSeen[3] = {false, false, false};
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "params")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    const SString axes = Text("axes").stripped().lower();
    int params = -1;
    for (int i = 0; i < SXmatlDielMatl::ParamsCount; ++i)
      if (axes == SXmatlDielMatl::kParamsWords[i]) params = i;
    if (params < 0) return Fail(20537);
    const bool covers[3] = {axes.contains("x"), axes.contains("y"), axes.contains("z")};
    for (int i = 0; i < 3; ++i) {
      if (covers[i] && axisSeen[i]) return Fail(20537);
      axisSeen[i] = axisSeen[i] || covers[i];
    }
    SXmatlAxis values;
    const bool ok = Real("erel", values.erel, 20538) && Real("mrel", values.mrel, 20539) &&
                    Real("tane", values.tane, 20540) && Real("tanm", values.tanm, 20541) &&
                    (material.resistivity ? Real("rsvy", values.cond, 20543)
                                          : RealOrInf("cond", values.cond, values.condInf, 20542, false));
    if (!ok) return false;
    material.has[params] = true;
    for (int i = 0; i < 3; ++i)
      if (covers[i]) material.axis[i] = values;
    itsXml.skipCurrentElement();
  }
  if (itsXml.hasError()) return FailXml();
  itsTarget.itsData.dielectrics.push_back(material);
  return true;
}

bool SXmatlReader::ReadMeshDefs(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "mesh")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    SXmatlMesh mesh;
    mesh.line = Line();
    mesh.isPrivate = isPrivate;
    if (!Required("name", mesh.name, kBadMesh) ||
        !Word("type", mesh.type, kBadMesh, kMeshTypes, kMeshTypeCodes, Count(kMeshTypes)))
      return false;
    const bool via = mesh.type == SXmatlMesh::Via;
    mesh.fillType = via ? int(SMatlViaDrawLayer::DefaultViaFill) : int(SMatlMetalData::Staircase);
    int edge = 1;
    int pads = 0;
    const bool ok =
        (via ? Word("fill_type", mesh.fillType, 20631, kViaFills, kViaFillCodes, Count(kViaFills))
             : Word("fill_type", mesh.fillType, kBadMesh, kMetalFills, kMetalFillCodes, Count(kMetalFills))) &&
        Int("xmin", mesh.xmin, kBadMesh, 1) && Int("xmax", mesh.xmax, kBadMesh, 1) &&
        Int("ymin", mesh.ymin, kBadMesh, 1) && Int("ymax", mesh.ymax, kBadMesh, 1) &&
        Word("use_edge_mesh", edge, kBadMesh, kOnOff, kOnOffCodes, Count(kOnOff)) &&
        Word("pads", pads, 20630, kOnOff, kOnOffCodes, Count(kOnOff)) &&
        Flag("usemaxlength", mesh.useMaxLength, kBadMesh, "yes", "no") &&
        Real("maxlen", mesh.maxLength, kBadMesh, false, 0.0);
    if (!ok) return false;
    mesh.isoType = Text("iso_type");
    mesh.edgeMesh = edge != 0;
    mesh.pads = pads != 0;
    itsTarget.itsData.meshes.push_back(mesh);
    itsXml.skipCurrentElement();
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadModelDefs(bool isPrivate) {
  SXmatlData& data = itsTarget.itsData;
  while (itsXml.readNextStartElement()) {
    itsAttributes = itsXml.attributes();
    if (Is(itsXml.name(), "metal_model")) {
      SXmatlMetalModel model;
      model.line = Line();
      model.isPrivate = isPrivate;
      if (!Required("name", model.name, kBadMetalModel) ||
          !Word("model_type", model.type, kBadMetalModel, kMetalModels, kMetalModelCodes, Count(kMetalModels)))
        return false;
      // Only the attributes of the model's type are held.
      int thick = 0;
      const bool ok = (!model.HasCurrentRatio() || Real("current_ratio", model.currentRatio, kBadMetalModel, false, 0)) &&
                      (!model.HasNumSheets() || Int("num_sheets", model.numSheets, kBadMetalModel, 1)) &&
                      (!model.HasRoughness() ||
                       (Real("top_roughness", model.topRoughness, kBadMetalModel, false, 0) &&
                        Real("bottom_roughness", model.bottomRoughness, kBadMetalModel, false, 0) &&
                        Word("cross_section", thick, kBadMetalModel, kCrossSections, kCrossSectionCodes,
                             Count(kCrossSections))));
      if (!ok) return false;
      model.thick = thick != 0;
      data.metalModels.push_back(model);
    } else if (Is(itsXml.name(), "via_model")) {
      SXmatlViaModel model;
      model.line = Line();
      model.isPrivate = isPrivate;
      int solid = 0;
      const bool ok =
          Required("name", model.name, kBadViaModel) &&
          Word("model_type", model.type, kBadViaModel, kViaModels, kViaModelCodes, Count(kViaModels)) &&
          Real("fill_factor", model.fillFactor, kBadViaModel, false, 0) &&
          Word("volume_type", solid, kBadViaModel, kVolumeTypes, kVolumeTypeCodes, Count(kVolumeTypes)) &&
          Real("wall_thickness", model.wallThickness, kBadViaModel, false, 0) &&
          Real("via_density", model.viaDensity, kBadViaModel, false, 0);
      if (!ok) return false;
      model.solid = solid != 0;
      data.viaModels.push_back(model);
    }
    itsXml.skipCurrentElement();
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadBiasDefs(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "bias")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    SXmatlBias bias;
    bias.line = Line();
    bias.isPrivate = isPrivate;
    if (!Required("name", bias.name, kBadBias)) return false;
    while (itsXml.readNextStartElement()) {
      const QStringRef name = itsXml.name();
      if (Is(name, "lookup_table") || Is(name, "lookup_vector")) {
        if (!bias.lookup.isEmpty()) return Fail(kBadBias);
        bias.lookup = SString(name.toString());
        // Attributes of another namespace would need its declaration to be written again.
        for (const QXmlStreamAttribute& attribute : itsXml.attributes())
          if (attribute.prefix().isEmpty())
            bias.attributes.emplace_back(SString(attribute.qualifiedName().toString()),
                                       SString(attribute.value().toString()));
      }
      itsXml.skipCurrentElement();
    }
    if (itsXml.hasError()) return FailXml();
    itsTarget.itsData.biases.push_back(bias);
  }
  return !itsXml.hasError() || FailXml();
}

// ---- the stackup

bool SXmatlReader::ReadStackup(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    const QStringRef name = itsXml.name();
    bool ok = true;
    if (Is(name, "top") || Is(name, "bottom"))
      ok = ReadCover(isPrivate, Is(name, "top"));
    else if (Is(name, "diel"))
      ok = ReadDiel(isPrivate);
    else if (Is(name, "vias"))
      ok = ReadVias(isPrivate);
    else
      itsXml.skipCurrentElement();
    if (!ok) return false;
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadCover(bool isPrivate, bool top) {
  itsAttributes = itsXml.attributes();
  SXmatlCover cover;
  cover.isPrivate = isPrivate;
  if (!NotEmpty("material", cover.material, 20582) || !NotEmpty("model", cover.model, 20583)) return false;
  (top ? itsTarget.itsData.top : itsTarget.itsData.bottom) = cover;
  itsXml.skipCurrentElement();
  return true;
}

bool SXmatlReader::ReadDiel(bool isPrivate) {
  itsAttributes = itsXml.attributes();
  SXmatlDiel diel;
  diel.line = Line();
  diel.isPrivate = isPrivate;
  const bool ok = Required("name", diel.name, 20526) && Required("dielectric", diel.dielectric, 20525) &&
                  Flag("is_conformal", diel.conformal, 20527) && Real("thickness", diel.thickness, 20528, false, 0) &&
                  Int("zpart", diel.zpart, 20529, 0) && NotEmpty("measured_from", diel.measuredFrom, 20530) &&
                  NotEmpty("associated_cond", diel.associatedCond, 20531) &&
                  Real("sidewall_thickness", diel.sidewallThickness, 20532, false, 0) &&
                  Real("topwall_thickness", diel.topwallThickness, 20533, false, 0) &&
                  Real("bottomwall_thickness", diel.bottomwallThickness, kBadBottomwall, false, 0);
  if (!ok) return false;
  while (itsXml.readNextStartElement()) {
    const QStringRef name = itsXml.name();
    SXmatlLayer layer;
    layer.isPrivate = isPrivate;
    if (Is(name, "metal_techlayer"))
      layer.kind = SXmatlLayer::Metal;
    else if (Is(name, "brick_techlayer"))
      layer.kind = SXmatlLayer::Brick;
    else
      return Fail(isPrivate ? 20535 : 20534);
    bool kept = false;
    if (!ReadLayer(layer, kept)) return false;
    if (kept) diel.layers.push_back(layer);
  }
  if (itsXml.hasError()) return FailXml();
  itsTarget.itsData.diels.push_back(diel);
  return true;
}

bool SXmatlReader::ReadVias(bool isPrivate) {
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "via_techlayer")) {
      itsXml.skipCurrentElement();
      continue;
    }
    SXmatlLayer layer;
    layer.kind = SXmatlLayer::Via;
    layer.isPrivate = isPrivate;
    bool kept = false;
    if (!ReadLayer(layer, kept)) return false;
    if (kept) itsTarget.itsData.vias.push_back(layer);
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadLayer(SXmatlLayer& layer, bool& kept) {
  itsAttributes = itsXml.attributes();
  layer.line = Line();
  const int* failures =
      layer.kind == SXmatlLayer::Via ? kViaFailures : layer.kind == SXmatlLayer::Brick ? kBrickFailures : kMetalFailures;
  bool ignore = false;
  if (!Flag("ignore", ignore, failures[AIgnore])) return false;
  kept = !ignore;
  if (ignore) {
    itsXml.skipCurrentElement();
    return !itsXml.hasError() || FailXml();
  }
  layer.material = layer.kind == SXmatlLayer::Brick ? SString() : SString("Lossless");
  layer.model = layer.kind == SXmatlLayer::Brick ? SString() : SString("Default");
  bool ok = Required("name", layer.name, failures[AName]) &&
            (layer.kind == SXmatlLayer::Brick ? Required("material", layer.material, failures[AMaterial])
                                              : NotEmpty("material", layer.material, failures[AMaterial])) &&
            (layer.kind == SXmatlLayer::Brick || NotEmpty("model", layer.model, failures[AModel])) &&
            Int("color_pattern", layer.pattern, failures[APattern], 0);
  if (!ok) return false;
  layer.layerName = Text("layer_name");
  layer.bias = Text("bias");
  layer.mesh = Text("mesh");
  if (layer.kind == SXmatlLayer::Metal) {
    if (!Real("thickness", layer.thickness, failures[AThickness], false, 0) ||
        !Flag("direction", layer.down, failures[ADirection], "down", "up"))
      return false;
  } else if (layer.kind == SXmatlLayer::Via) {
    if (!Required("from", layer.from, failures[AFrom]) || !Required("to", layer.to, failures[ATo])) return false;
  }
  bool mapped = false;
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "map")) {
      itsXml.skipCurrentElement();
      continue;
    }
    if (mapped) return Fail(failures[AMap]);
    mapped = true;
    if (!ReadMap(layer.map, failures)) return false;
  }
  return !itsXml.hasError() || FailXml();
}

bool SXmatlReader::ReadMap(SXmatlMap& map, const int* failures) {
  itsAttributes = itsXml.attributes();
  map.dxfLayer = Text("dxf_layer");
  map.gerberName = Text("gerber_name");
  map.mask = Text("mask");
  if (!Int("gds_stream", map.gdsStream, failures[AStream], 0) ||
      !Int("gds_datatype", map.gdsDatatype, failures[ADatatype], 0))
    return false;
  itsXml.skipCurrentElement();
  return true;
}

bool SXmatlReader::ReadDielMaps(bool isPrivate) {
  static const QRegularExpression kSeparators(QStringLiteral("[\\s,]+"));
  while (itsXml.readNextStartElement()) {
    if (!Is(itsXml.name(), "dielmap")) {
      itsXml.skipCurrentElement();
      continue;
    }
    itsAttributes = itsXml.attributes();
    SXmatlDielMap map;
    map.line = Line();
    map.isPrivate = isPrivate;
    if (!Required("name", map.name, kBadPrivateDielMap)) return false;
    map.publicDiel = Text("pub_diel");
    map.privateDiels = Text("priv_diel_list").qstring().split(kSeparators, Qt::SkipEmptyParts);
    itsTarget.itsData.dielMaps.push_back(map);
    itsXml.skipCurrentElement();
  }
  return !itsXml.hasError() || FailXml();
}

// ---- the owner's side

bool SXmatl::Read(const SString& fileName) {
  Reset();
  SetInputFileName(fileName);
  VeloraTrace(3, TRACE_GENERAL, "Starting technology file read for file %s.", fileName.data());
  QFile file(fileName.qstring());
  if (!file.open(QIODevice::ReadOnly)) {
    SMatlReporting::Instance().NameError(kCannotOpen, fileName);
    SetReadOk(false);
    return false;
  }
  QXmlStreamReader xml(&file);
  SXmatlReader reader(*this, xml, fileName);
  const bool ok = reader.ReadFile();
  SetReadOk(ok);
  VeloraTrace(3, TRACE_GENERAL, "Finished technology file read for file %s.", fileName.data());
  return ok;
}

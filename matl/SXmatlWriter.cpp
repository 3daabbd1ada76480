#include "SXmatlWriter.h"

#include "SMatlMetalData.h"
#include "SMatlReporting.h"
#include "SMatlUtil.h"
#include "SMatlViaDrawLayer.h"
#include "SSafeSave.h"
#include "SVeloraError.h"
#include "SVeloraTrace.h"
#include "SXmatl.h"
#include "SXmatlCipher.h"

#include <QBuffer>
#include <QXmlStreamWriter>


namespace {

const int kCannotCreate = 20633;
// Stages of writing, in order.
const int kSourcesFailed = 20634;
const int kUnitsFailed = 20635;
const int kCommentsFailed = 20636;
const int kVariablesFailed = 20637;
const int kMaterialsFailed = 20638;
const int kMeshFailed = 20639;
const int kModelsFailed = 20640;
const int kPrivateFailed = 20643;

const char kSchemaInstance[] = "http://www.w3.org/2001/XMLSchema-instance";
const char kSchemaLocation[] = "https://velora.example.org/schema/matl/matl-1.2.xsd";

const char* MetalFillWord(int fill) {
  switch (fill) {
  case SMatlMetalData::Conformal: return "conformal";
  case SMatlMetalData::Diagonal: return "diagonal";
  default: return "staircase";
  }
}

const char* ViaFillWord(int fill) {
  switch (fill) {
  case SMatlViaDrawLayer::Ring: return "Ring";
  case SMatlViaDrawLayer::Full: return "Full";
  case SMatlViaDrawLayer::Vertices: return "Vertices";
  case SMatlViaDrawLayer::Center: return "Center";
  case SMatlViaDrawLayer::Bar: return "Bar";
  default: return "Default";
  }
}

const char* MetalModelWord(int type) {
  switch (type) {
  case SMatlMetalData::ThickMetalModel: return "ThickMetal";
  case SMatlMetalData::RoughMetal: return "RoughMetal";
  case SMatlMetalData::Resistor: return "Resistor";
  case SMatlMetalData::RdcRrf: return "Rdc/Rrf";
  case SMatlMetalData::General: return "General";
  case SMatlMetalData::SenseMetal: return "Sense";
  default: return "Normal";
  }
}

const char* ViaModelWord(int type) {
  switch (type) {
  case SMatlViaDrawLayer::Surface: return "Surface";
  case SMatlViaDrawLayer::Array: return "Array";
  default: return "Volume";
  }
}

template <class T> bool AnyOf(const std::vector<T>& list, bool isPrivate) {
  for (const T& entry : list)
    if (entry.isPrivate == isPrivate) return true;
  return false;
}

void Attribute(QXmlStreamWriter& xml, const char* name, const SString& value) {
  xml.writeAttribute(QLatin1String(name), value.qstring());
}

void Attribute(QXmlStreamWriter& xml, const char* name, double value) {
  xml.writeAttribute(QLatin1String(name), SXmatlWriter::Number(value).qstring());
}

void Attribute(QXmlStreamWriter& xml, const char* name, int value) {
  xml.writeAttribute(QLatin1String(name), QString::number(value));
}

void Optional(QXmlStreamWriter& xml, const char* name, const SString& value) {
  if (!value.isEmpty()) Attribute(xml, name, value);
}

} // namespace

SString SXmatlWriter::Number(double value) { return SMatlUtil::Instance().FormatNumber(value); }

void SXmatlWriter::WriteSources() {
  const auto& sources = itsSource.itsData.sources;
  if (sources.empty()) return;
  itsXml.writeStartElement(QStringLiteral("source"));
  for (const auto& source : sources) {
    itsXml.writeStartElement(QStringLiteral("src"));
    Attribute(itsXml, "name", source.first);
    Attribute(itsXml, "value", source.second);
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteUnits() {
  static const char* const kNames[SMatlUtil::DimensionCount] = {"lunit", "cunit", "runit", "srunit", "tempunit"};
  itsXml.writeStartElement(QStringLiteral("units"));
  for (int dimension = 0; dimension < SMatlUtil::DimensionCount; ++dimension)
    Attribute(itsXml, kNames[dimension], itsSource.GetUnits().GetCurrentName(dimension));
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteComments() {
  const std::vector<SString>& comments = itsSource.itsData.comments;
  if (comments.empty()) return;
  itsXml.writeStartElement(QStringLiteral("comments"));
  for (const SString& line : comments) {
    itsXml.writeStartElement(QStringLiteral("line"));
    // A reader turns a carriage return into a line feed unless it comes as a reference.
    const QStringList pieces = line.qstring().split(QLatin1Char('\r'));
    for (int i = 0; i < pieces.size(); ++i) {
      if (i > 0) itsXml.writeEntityReference(QStringLiteral("#13"));
      itsXml.writeCharacters(pieces[i]);
    }
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteVariables(bool isPrivate) {
  const auto& variables = itsSource.itsData.variables;
  if (!AnyOf(variables, isPrivate)) return;
  itsXml.writeStartElement(QStringLiteral("variables"));
  for (const SXmatlVar& var : variables) {
    if (var.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("var"));
    Attribute(itsXml, "name", var.name);
    Attribute(itsXml, "value", var.value);
    Optional(itsXml, "units", var.units);
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteMaterials(bool isPrivate) {
  const SXmatlData& data = itsSource.itsData;
  bool any = AnyOf(data.dielectrics, isPrivate);
  for (const SXmatlCond& conductor : data.conductors) any = any || conductor.IsPrivate() == isPrivate;
  if (!any) return;
  itsXml.writeStartElement(QStringLiteral("materials"));
  for (const SXmatlCond& conductor : data.conductors) {
    if (conductor.IsPrivate() != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("conductor"));
    Attribute(itsXml, "name", conductor.GetName());
    const int kind = conductor.GetKind();
    Attribute(itsXml, "condspec", SString(SXmatlCond::KindWord(kind)));
    const int values = SXmatlCond::Values(kind);
    const double conductivity = conductor.itsConductivity.GetValue();
    if (values & SXmatlCond::ValueCond) {
      if (conductor.itsCondIsInf)
        Attribute(itsXml, "cond", SString("inf"));
      else
        Attribute(itsXml, "cond", conductivity);
    }
    if (values & SXmatlCond::ValueRsvy) Attribute(itsXml, "rsvy", conductivity);
    if (values & SXmatlCond::ValueShRes) Attribute(itsXml, "shres", conductivity);
    if (values & SXmatlCond::ValueRpv) Attribute(itsXml, "rpv", conductivity);
    if (values & SXmatlCond::ValueRdc) Attribute(itsXml, "rdc", conductor.itsRdc.GetValue());
    if (values & SXmatlCond::ValueRrf) Attribute(itsXml, "rrf", conductor.itsRrf.GetValue());
    if (values & SXmatlCond::ValueXdc) Attribute(itsXml, "xdc", conductor.itsXdc.GetValue());
    if (values & SXmatlCond::ValueLs) Attribute(itsXml, "ls", conductor.itsLs.GetValue());
    itsXml.writeEndElement();
  }
  for (const SXmatlDielMatl& material : data.dielectrics) {
    if (material.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("dielectric"));
    Attribute(itsXml, "name", material.name);
    if (material.anisotropic) Attribute(itsXml, "anisotropic", SString("yes"));
    Attribute(itsXml, "cond_res", SString(material.resistivity ? "rsvy" : "cond"));
    for (int params = 0; params < SXmatlDielMatl::ParamsCount; ++params) {
      if (!material.has[params]) continue;
      const SXmatlAxis& axis = material.axis[SXmatlDielMatl::FirstAxis(params)];
      itsXml.writeStartElement(QStringLiteral("params"));
      Attribute(itsXml, "axes", SString(SXmatlDielMatl::kParamsWords[params]));
      Attribute(itsXml, "erel", axis.erel);
      Attribute(itsXml, "mrel", axis.mrel);
      Attribute(itsXml, "tane", axis.tane);
      Attribute(itsXml, "tanm", axis.tanm);
      if (material.resistivity)
        Attribute(itsXml, "rsvy", axis.cond);
      else if (axis.condInf)
        Attribute(itsXml, "cond", SString("INF"));
      else
        Attribute(itsXml, "cond", axis.cond);
      itsXml.writeEndElement();
    }
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteMeshDefs(bool isPrivate) {
  const auto& meshes = itsSource.itsData.meshes;
  if (!AnyOf(meshes, isPrivate)) return;
  itsXml.writeStartElement(QStringLiteral("mesh_defs"));
  for (const SXmatlMesh& mesh : meshes) {
    if (mesh.isPrivate != isPrivate) continue;
    const bool via = mesh.type == SXmatlMesh::Via;
    itsXml.writeStartElement(QStringLiteral("mesh"));
    Attribute(itsXml, "name", mesh.name);
    Attribute(itsXml, "type", SString(SXmatlMesh::TypeWord(mesh.type)));
    Attribute(itsXml, "fill_type", SString(via ? ViaFillWord(mesh.fillType) : MetalFillWord(mesh.fillType)));
    Optional(itsXml, "iso_type", mesh.isoType);
    Attribute(itsXml, "xmin", mesh.xmin);
    Attribute(itsXml, "xmax", mesh.xmax);
    Attribute(itsXml, "ymin", mesh.ymin);
    Attribute(itsXml, "ymax", mesh.ymax);
    Attribute(itsXml, "use_edge_mesh", SString(mesh.edgeMesh ? "on" : "off"));
    if (via) Attribute(itsXml, "pads", SString(mesh.pads ? "on" : "off"));
    if (mesh.useMaxLength) {
      Attribute(itsXml, "usemaxlength", SString("yes"));
      Attribute(itsXml, "maxlen", mesh.maxLength);
    }
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteModelDefs(bool isPrivate) {
  const SXmatlData& data = itsSource.itsData;
  if (!AnyOf(data.metalModels, isPrivate) && !AnyOf(data.viaModels, isPrivate)) return;
  itsXml.writeStartElement(QStringLiteral("metal_model_defs"));
  for (const SXmatlMetalModel& model : data.metalModels) {
    if (model.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("metal_model"));
    Attribute(itsXml, "name", model.name);
    Attribute(itsXml, "model_type", SString(MetalModelWord(model.type)));
    if (model.HasCurrentRatio()) Attribute(itsXml, "current_ratio", model.currentRatio);
    if (model.HasNumSheets()) Attribute(itsXml, "num_sheets", model.numSheets);
    if (model.HasRoughness()) {
      Attribute(itsXml, "top_roughness", model.topRoughness);
      Attribute(itsXml, "bottom_roughness", model.bottomRoughness);
      Attribute(itsXml, "cross_section", SString(model.thick ? "thick" : "thin"));
    }
    itsXml.writeEndElement();
  }
  for (const SXmatlViaModel& model : data.viaModels) {
    if (model.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("via_model"));
    Attribute(itsXml, "name", model.name);
    Attribute(itsXml, "model_type", SString(ViaModelWord(model.type)));
    Attribute(itsXml, "fill_factor", model.fillFactor);
    Attribute(itsXml, "volume_type", SString(model.solid ? "Solid" : "Wall"));
    Attribute(itsXml, "wall_thickness", model.wallThickness);
    Attribute(itsXml, "via_density", model.viaDensity);
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteBiasDefs(bool isPrivate) {
  const auto& biases = itsSource.itsData.biases;
  if (!AnyOf(biases, isPrivate)) return;
  itsXml.writeStartElement(QStringLiteral("bias_defs"));
  for (const SXmatlBias& bias : biases) {
    if (bias.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("bias"));
    Attribute(itsXml, "name", bias.name);
    if (!bias.lookup.isEmpty()) {
      itsXml.writeStartElement(bias.lookup.qstring());
      for (const auto& attribute : bias.attributes) itsXml.writeAttribute(attribute.first.qstring(), attribute.second.qstring());
      itsXml.writeEndElement();
    }
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteLayer(const SXmatlLayer& layer) {
  static const char* const kElements[] = {"metal_techlayer", "brick_techlayer", "via_techlayer"};
  itsXml.writeStartElement(QLatin1String(kElements[layer.kind]));
  Attribute(itsXml, "name", layer.name);
  Attribute(itsXml, "material", layer.material);
  if (layer.kind != SXmatlLayer::Brick) Attribute(itsXml, "model", layer.model);
  Attribute(itsXml, "layer_name", layer.layerName);
  if (layer.kind == SXmatlLayer::Metal) Attribute(itsXml, "thickness", layer.thickness);
  if (layer.kind != SXmatlLayer::Brick) Optional(itsXml, "bias", layer.bias);
  Optional(itsXml, "mesh", layer.mesh);
  Attribute(itsXml, "color_pattern", layer.pattern);
  if (layer.kind == SXmatlLayer::Metal && layer.down) Attribute(itsXml, "direction", SString("Down"));
  if (layer.kind == SXmatlLayer::Via) {
    Attribute(itsXml, "from", layer.from);
    Attribute(itsXml, "to", layer.to);
  }
  const SXmatlMap& map = layer.map;
  if (!map.IsEmpty()) {
    itsXml.writeStartElement(QStringLiteral("map"));
    Optional(itsXml, "dxf_layer", map.dxfLayer);
    Optional(itsXml, "gerber_name", map.gerberName);
    if (map.gdsStream >= 0) {
      Attribute(itsXml, "gds_stream", map.gdsStream);
      Attribute(itsXml, "gds_datatype", map.gdsDatatype);
    }
    Optional(itsXml, "mask", map.mask);
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteStackup(bool isPrivate) {
  const SXmatlData& data = itsSource.itsData;
  bool any = AnyOf(data.diels, isPrivate) || AnyOf(data.vias, isPrivate) || data.top.isPrivate == isPrivate ||
             data.bottom.isPrivate == isPrivate;
  if (!any) return;
  itsXml.writeStartElement(QStringLiteral("stackup"));
  auto cover = [this, isPrivate](const char* name, const SXmatlCover& cover) {
    if (cover.isPrivate != isPrivate) return;
    itsXml.writeStartElement(QLatin1String(name));
    Attribute(itsXml, "material", cover.material);
    Attribute(itsXml, "model", cover.model);
    itsXml.writeEndElement();
  };
  cover("top", data.top);
  for (const SXmatlDiel& diel : data.diels) {
    if (diel.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("diel"));
    Attribute(itsXml, "name", diel.name);
    Attribute(itsXml, "dielectric", diel.dielectric);
    if (diel.conformal) Attribute(itsXml, "is_conformal", SString("true"));
    Attribute(itsXml, "thickness", diel.thickness);
    Attribute(itsXml, "zpart", diel.zpart);
    Optional(itsXml, "measured_from", diel.measuredFrom);
    Optional(itsXml, "associated_cond", diel.associatedCond);
    const std::pair<const char*, double> walls[] = {{"sidewall_thickness", diel.sidewallThickness},
                                                    {"topwall_thickness", diel.topwallThickness},
                                                    {"bottomwall_thickness", diel.bottomwallThickness}};
    for (const auto& wall : walls)
      if (diel.conformal || wall.second != 0.0) Attribute(itsXml, wall.first, wall.second);
    for (const SXmatlLayer& layer : diel.layers) WriteLayer(layer);
    itsXml.writeEndElement();
  }
  if (AnyOf(data.vias, isPrivate)) {
    itsXml.writeStartElement(QStringLiteral("vias"));
    for (const SXmatlLayer& via : data.vias)
      if (via.isPrivate == isPrivate) WriteLayer(via);
    itsXml.writeEndElement();
  }
  cover("bottom", data.bottom);
  itsXml.writeEndElement();
}

void SXmatlWriter::WriteDielMaps(bool isPrivate) {
  const auto& maps = itsSource.itsData.dielMaps;
  if (!AnyOf(maps, isPrivate)) return;
  itsXml.writeStartElement(QStringLiteral("diel_map"));
  for (const SXmatlDielMap& map : maps) {
    if (map.isPrivate != isPrivate) continue;
    itsXml.writeStartElement(QStringLiteral("dielmap"));
    Attribute(itsXml, "name", map.name);
    Attribute(itsXml, "pub_diel", map.publicDiel);
    Attribute(itsXml, "priv_diel_list", SString(map.privateDiels.join(QStringLiteral(", "))));
    itsXml.writeEndElement();
  }
  itsXml.writeEndElement();
}

void SXmatlWriter::WritePrivateContent() {
  WriteVariables(true);
  WriteMaterials(true);
  WriteBiasDefs(true);
  WriteStackup(true);
  WriteDielMaps(true);
}

// ---- the owner's side

namespace {

void StartDocument(QXmlStreamWriter& xml) {
  xml.setAutoFormatting(true);
  xml.setAutoFormattingIndent(2);
  xml.writeStartDocument();
}

} // namespace

bool SXmatl::WritePrivenc(QXmlStreamWriter& xml) {
  if (!SXmatlCipher::ReadKeyText(itsKeyFile, itsKeyText)) return false;
  QByteArray plain;
  QBuffer buffer(&plain);
  buffer.open(QIODevice::WriteOnly);
  QXmlStreamWriter inner(&buffer);
  StartDocument(inner);
  inner.writeStartElement(QStringLiteral("privenc"));
  SXmatlWriter(*this, inner).WritePrivateContent();
  inner.writeEndElement();
  inner.writeEndDocument();
  if (inner.hasError()) return false;
  xml.writeStartElement(QStringLiteral("privenc"));
  for (const QString& chunk : SXmatlCipher::ToHexChunks(SXmatlCipher::EncryptData(plain, itsKeyText)))
    xml.writeTextElement(QStringLiteral("enc"), chunk);
  xml.writeEndElement();
  return true;
}

bool SXmatl::WriteText(QByteArray& text) {
  text.clear();
  const SString& name = GetOutputFileName();
  SMatlReporting& report = SMatlReporting::Instance();
  auto failed = [&](int number) {
    report.NameError(number, name);
    return false;
  };
  ConvertUnits();
  QBuffer buffer(&text);
  buffer.open(QIODevice::WriteOnly);
  QXmlStreamWriter xml(&buffer);
  StartDocument(xml);
  xml.writeStartElement(QStringLiteral("technology_file"));
  xml.writeAttribute(QStringLiteral("xmlns:xsi"), QLatin1String(kSchemaInstance));
  xml.writeAttribute(QStringLiteral("xsi:noNamespaceSchemaLocation"), QLatin1String(kSchemaLocation));
  xml.writeAttribute(QStringLiteral("version"), itsData.version.qstring());
  if (itsHasPrivate) xml.writeAttribute(QStringLiteral("has_private"), QStringLiteral("true"));

  SXmatlWriter writer(*this, xml);
  writer.WriteSources();
  if (xml.hasError()) return failed(kSourcesFailed);
  writer.WriteUnits();
  if (xml.hasError()) return failed(kUnitsFailed);
  writer.WriteComments();
  if (xml.hasError()) return failed(kCommentsFailed);
  xml.writeStartElement(QStringLiteral("public"));
  writer.WriteVariables(false);
  if (xml.hasError()) return failed(kVariablesFailed);
  writer.WriteMaterials(false);
  if (xml.hasError()) return failed(kMaterialsFailed);
  writer.WriteMeshDefs(false);
  if (xml.hasError()) return failed(kMeshFailed);
  writer.WriteModelDefs(false);
  writer.WriteStackup(false);
  xml.writeEndElement();
  if (xml.hasError()) return failed(kModelsFailed);
  if (itsHasPrivate) {
    if (itsEncryptOnWrite && !itsKeyFile.isEmpty()) {
      if (!WritePrivenc(xml)) return failed(kPrivateFailed);
    } else {
      xml.writeStartElement(QStringLiteral("private"));
      writer.WritePrivateContent();
      xml.writeEndElement();
    }
    if (xml.hasError()) return failed(kPrivateFailed);
  }
  xml.writeEndElement();
  xml.writeEndDocument();
  return true;
}

bool SXmatl::Write(const SString& fileName) {
  SetOutputFileName(fileName);
  VeloraTrace(3, TRACE_GENERAL, "Writing technology file %s.", fileName.data());
  QByteArray text;
  if (!WriteText(text)) return false;
  SSafeSave save(fileName);
  if (!save.Commit(text.constData(), static_cast<size_t>(text.size()))) {
    SString message;
    VeloraFormatMessage(message, kCannotCreate, fileName.data());
    SMatlReporting::Instance().ReportError(message + " " + save.GetErrorText(), kCannotCreate);
    return false;
  }
  return true;
}

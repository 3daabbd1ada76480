#include "SInterfaceBlock.h"

#include "SFile.h"
#include "SIBAWR64Layer.h"
#include "SIBAWR64Matl.h"
#include "SIBAWR64MeshOption.h"
#include "SIBAWR64Port.h"
#include "SIBAWR64Trace.h"
#include "SIBLayer.h"
#include "SIBLayerMapping.h"
#include "SIBMetal.h"
#include "SInterfaceWords.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"

#include <QRegExp>

SCOLLECTABLE_DEFINE(SInterfaceBlock, SID_INTERFACEBLOCK, &SVerbatimBlock::staticTypeInfo())

namespace {
// A word of an option line: its values, each a number (N), a word (T) or "Yes"/"No" (Y),
// and the format from which it is written.
struct SOptionWord {
  const char* word;
  const char* values;
  int fromFormat;
};

const QVector<SOptionWord>& OptionWords(int line) {
  static const QVector<SOptionWord> words[SInterfaceBlock::OptionLineCount] = {
      {{"MESHSIZE", "NT", 16},
       {"MESHMULTIPILER", "N", 16},
       {"EDGEMESH", "N", 16},
       {"ARCSEGMENT", "N", 16},
       {"SHIELDMESHSIZE", "NT", 18},
       {"SHIELDMESHMULTIPLIER", "N", 18}},
      {{"EQUIVCCT", "T", 16}},
      {{"MULTITHREAD", "Y", 16},
       {"NUMBEROFTHREADS", "N", 16},
       {"REUSERESULTS", "Y", 16},
       {"USENUMBEROFPOINTS", "Y", 16},
       {"NUMBEROFPOINTS", "N", 16},
       {"NUMBEROFADAPTIVE", "N", 17},
       {"CONVERGENCETOLERANCE", "N", 17}},
      {{"TOPMETAL", "T", 16},
       {"BOTTOMMETAL", "T", 16},
       {"DCPOINT", "N", 16},
       {"WRITEMERGEFILE", "Y", 16},
       {"ISAMOMCAP", "Y", 19},
       {"USELINEVIAS", "Y", 19}},
  };
  return words[line];
}

const char* const kOptionKeywords[] = {"CDSFASTSOLVERMESHOPTIONS", "CDSFASTSOLVERMODELOPTIONS",
                                       "CDSFASTSOLVEROPTIONS", "CDSFASTSOLVERCFGOPTIONS"};

template <typename T> void CopyList(SOrdered& to, const SOrdered& from) {
  for (const SCollectable* item : from) to.append(static_cast<const T*>(item)->copy());
}

template <typename T> void WriteList(SProjectStream& out, const SOrdered& list) {
  for (const SCollectable* item : list) static_cast<const T*>(item)->Write(out);
}

// Reads an item behind its keyword into `list`; false when the line can't be read.
template <typename T> bool ReadItem(SFile& file, SOrdered& list, T* item = new T) {
  if (!item->Read(file)) {
    delete item;
    return false;
  }
  list.append(item);
  return true;
}

bool ReadDoubles(SFile& file, double* values, int count) {
  for (int i = 0; i < count; ++i)
    if (!file.GetDoubleStrict(values[i])) return false;
  return true;
}

void WriteDoubles(SProjectStream& out, const char* keyword, const double* values, int count) {
  out << keyword;
  for (int i = 0; i < count; ++i) out << ' ' << values[i];
  out << '\n';
}
}  // namespace

SInterfaceBlock::SInterfaceBlock(SProject* owner) : SVerbatimBlock(owner, "INTERFACE") { ClearFields(); }

SInterfaceBlock::SInterfaceBlock(const SInterfaceBlock& other)
    : SVerbatimBlock(other),
      itsMeshName(other.itsMeshName),
      itsMeshFlag(other.itsMeshFlag),
      itsHasMeshDefaults(other.itsHasMeshDefaults),
      itsCadence(other.itsCadence),
      itsAds(other.itsAds),
      itsShieldNames(other.itsShieldNames),
      itsCapMetalNames(other.itsCapMetalNames),
      itsAdditionalOptions(other.itsAdditionalOptions),
      itsRemoteSimulation(other.itsRemoteSimulation),
      itsHasAwr64Project(other.itsHasAwr64Project),
      itsAwr64Options(other.itsAwr64Options),
      itsVerbatim(other.itsVerbatim) {
  for (int i = 0; i < 4; ++i) itsMeshValues[i] = other.itsMeshValues[i];
  for (int i = 0; i < OptionLineCount; ++i) itsOptions[i] = other.itsOptions[i];
  itsAwr64Project[0] = other.itsAwr64Project[0];
  itsAwr64Project[1] = other.itsAwr64Project[1];
  CopyList<SIBMetal>(itsMetals, other.itsMetals);
  CopyList<SIBLayer>(itsLayers, other.itsLayers);
  CopyList<SIBLayerMapping>(itsLayerMappings, other.itsLayerMappings);
  CopyList<SIBAWR64Matl>(itsAwr64Matls, other.itsAwr64Matls);
  CopyList<SIBAWR64Trace>(itsAwr64Traces, other.itsAwr64Traces);
  CopyList<SIBAWR64Layer>(itsAwr64Layers, other.itsAwr64Layers);
  CopyList<SIBAWR64MeshOption>(itsAwr64Meshes, other.itsAwr64Meshes);
  CopyList<SIBAWR64Port>(itsAwr64Ports, other.itsAwr64Ports);
}

SInterfaceBlock::~SInterfaceBlock() { ClearFields(); }

void SInterfaceBlock::ClearFields() {
  itsMeshName.clear();
  for (int& value : itsMeshValues) value = 0;
  itsMeshFlag = itsHasMeshDefaults = false;
  itsCadence = itsAds = SHostPlacement();
  itsShieldNames.clear();
  itsCapMetalNames.clear();
  for (int i = 0; i < OptionLineCount; ++i) {
    itsOptions[i].present = false;
    itsOptions[i].values = QVector<QStringList>(OptionWords(i).size());
  }
  itsAdditionalOptions.clear();
  itsRemoteSimulation = itsHasAwr64Project = false;
  itsAwr64Project[0].clear();
  itsAwr64Project[1].clear();
  itsAwr64Options.clear();
  for (SOrdered* list : {&itsMetals, &itsLayers, &itsLayerMappings, &itsAwr64Matls, &itsAwr64Traces, &itsAwr64Layers,
                         &itsAwr64Meshes, &itsAwr64Ports})
    list->clearAndDestroy();
}

bool SInterfaceBlock::KeepsLines() const {
  if (itsOwner == nullptr) return false;
  // Decided from the file's name and FTYP: the project isn't loaded while it is read.
  const SString extension = itsOwner->GetFileName().GetExtension();
  if (extension == "geo" || extension == "net" || extension == "jxy" || extension == "jxb") return false;
  return itsOwner->GetFileTypeRead() != SVeloraFileName::FT_NETLIST_PROJECT;
}

bool SInterfaceBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  ClearFields();
  itsLines.clear();
  itsVerbatim = KeepsLines();
  if (itsVerbatim) return SVerbatimBlock::ReadBody(file, errors);
  bool inSection = false;
  for (;;) {
    SString keyword;
    if (!file.PeekToken(keyword)) {
      if (!file.NextLine()) return true;
      continue;
    }
    if (Match(keyword, "END")) {
      SString end, closing;
      file.GetToken(end);
      const bool closesBlock = file.GetToken(closing);
      file.RewindLine();
      if (!inSection || closesBlock) return true;
      inSection = false;
    } else if (itsHasAwr64Project && Match(keyword, "BEGIN")) {
      inSection = true;
    } else {
      file.NextToken();
      if (!ReadFieldLine(keyword, file, inSection)) {
        file.RewindLine();
        if (!Unknown(file, keyword, errors)) return false;
        continue;
      }
    }
    if (!file.NextLine()) return true;
  }
}

bool SInterfaceBlock::ReadPlacement(const SString& keyword, SFile& file, SHostPlacement& placement) {
  // The keyword without its three-letter tool prefix.
  const SString field = keyword.mid(3);
  bool ok = true;
  if (Match(field, "DATE")) {
    if (!file.GetRestOfLine(placement.date)) placement.date.clear();
  } else if (Match(field, "ORIGIN")) {
    ok = ReadDoubles(file, placement.origin, 2);
  } else if (Match(field, "MARGINS")) {
    ok = ReadDoubles(file, placement.margins, 4);
  } else if (Match(field, "EXTRAMARGINS")) {
    ok = ReadDoubles(file, placement.extraMargins, 4);
  } else {
    return false;
  }
  placement.present = true;
  return ok;
}

bool SInterfaceBlock::ReadOptions(int line, SFile& file) {
  const QVector<SOptionWord>& words = OptionWords(line);
  SOptionValues& options = itsOptions[line];
  options.present = true;
  SString word;
  while (file.GetToken(word)) {
    int index = 0;
    while (index < words.size() && word != words[index].word) ++index;
    if (index == words.size()) return false;
    QStringList values;
    for (const char* type = words[index].values; *type; ++type) {
      SString value;
      if (!file.GetToken(value)) return false;
      bool ok = true;
      if (*type == 'N') value.qstring().toDouble(&ok);
      if (*type == 'Y') ok = value == "Yes" || value == "No";
      if (!ok) return false;
      values.append(value.qstring());
    }
    options.values[index] = values;
  }
  return true;
}

bool SInterfaceBlock::ReadFieldLine(const SString& keyword, SFile& file, bool inSection) {
  using namespace SInterfaceWords;
  if (inSection) {
    if (Match(keyword, "AWR64OPTION")) {
      SString text;
      file.GetRestOfLine(text);
      QRegExp option(QStringLiteral("<OPTION\\s+Name=\"([^\"]*)\"\\s+Value=\"([^\"]*)\"\\s*/>"));
      if (!option.exactMatch(text.qstring().trimmed())) return false;
      itsAwr64Options.append(qMakePair(SString(option.cap(1)), SString(option.cap(2))));
      return true;
    }
    if (Match(keyword, "AWR64MATL")) return ReadItem<SIBAWR64Matl>(file, itsAwr64Matls);
    if (Match(keyword, "AWR64TRACE")) return ReadItem<SIBAWR64Trace>(file, itsAwr64Traces);
    if (Match(keyword, "AWR64LAYER") || Match(keyword, "AWR64ELAYER")) {
      SIBAWR64Layer* layer = new SIBAWR64Layer;
      layer->itsEmbedded = Match(keyword, "AWR64ELAYER");
      return ReadItem<SIBAWR64Layer>(file, itsAwr64Layers, layer);
    }
    if (Match(keyword, "AWR64MESHI")) return ReadItem<SIBAWR64MeshOption>(file, itsAwr64Meshes);
    if (Match(keyword, "AWR64PORT")) return ReadItem<SIBAWR64Port>(file, itsAwr64Ports);
    return false;
  }
  if (Match(keyword, "MESHDFAWR")) {
    itsHasMeshDefaults = true;
    if (!file.GetToken(itsMeshName)) return false;
    for (int& value : itsMeshValues)
      if (!GetInt(file, value)) return false;
    itsMeshFlag = GetFlag(file);
    return true;
  }
  if (Match(keyword, "METFPAWR")) return ReadItem<SIBMetal>(file, itsMetals);
  if (Match(keyword, "LAYFPAWR")) return ReadItem<SIBLayer>(file, itsLayers);
  if (Match(keyword, "CDSSHIELD") || Match(keyword, "CDSCAPMETAL")) {
    SString name;
    if (!file.GetToken(name)) return false;
    (Match(keyword, "CDSSHIELD") ? itsShieldNames : itsCapMetalNames).append(name.qstring());
    return true;
  }
  // The longer option word first: it begins with the shorter one.
  if (Match(keyword, "CDSFASTSOLVEROPTIONSADDLOPTIONS")) {
    if (!file.GetRestOfLine(itsAdditionalOptions)) itsAdditionalOptions.clear();
    return true;
  }
  for (int line = 0; line < OptionLineCount; ++line)
    if (Match(keyword, kOptionKeywords[line])) return ReadOptions(line, file);
  if (Match(keyword, "CDS")) return ReadPlacement(keyword, file, itsCadence);
  if (Match(keyword, "ADS")) return ReadPlacement(keyword, file, itsAds);
  if (Match(keyword, "AWR64SIMPROGTYPE")) {
    SString type;
    itsRemoteSimulation = file.GetToken(type) && type == "Remote";
    return true;
  }
  if (Match(keyword, "LAYERMAP")) return ReadItem<SIBLayerMapping>(file, itsLayerMappings);
  if (Match(keyword, "AWR64PROJECT")) {
    itsHasAwr64Project = true;
    return file.GetToken(itsAwr64Project[0]) && file.GetToken(itsAwr64Project[1]);
  }
  return false;
}

void SInterfaceBlock::WritePlacement(SProjectStream& out, const char* prefix, const SHostPlacement& placement,
                                     int format) const {
  if (!placement.present) return;
  const SString tool(prefix);
  out << tool << "DATE " << placement.date << '\n';
  WriteDoubles(out, (tool + "ORIGIN").data(), placement.origin, 2);
  WriteDoubles(out, (tool + "MARGINS").data(), placement.margins, 4);
  if (format >= 7) WriteDoubles(out, (tool + "EXTRAMARGINS").data(), placement.extraMargins, 4);
}

void SInterfaceBlock::WriteOptions(SProjectStream& out, int line, int format) const {
  const SOptionValues& options = itsOptions[line];
  if (!options.present) return;
  out << kOptionKeywords[line];
  const QVector<SOptionWord>& words = OptionWords(line);
  for (int i = 0; i < words.size(); ++i) {
    if (options.values[i].isEmpty() || format < words[i].fromFormat) continue;
    out << ' ' << words[i].word;
    for (const QString& value : options.values[i]) out << ' ' << SString(value);
  }
  out << '\n';
}

void SInterfaceBlock::WriteAwr64Section(SProjectStream& out) const {
  out << "AWR64PROJECT " << itsAwr64Project[0] << ' ' << itsAwr64Project[1] << "\nBEGIN\n";
  for (const auto& option : itsAwr64Options)
    out << "AWR64OPTION <OPTION Name=\"" << option.first << "\" Value=\"" << option.second << "\" />\n";
  WriteList<SIBAWR64Matl>(out, itsAwr64Matls);
  WriteList<SIBAWR64Trace>(out, itsAwr64Traces);
  WriteList<SIBAWR64Layer>(out, itsAwr64Layers);
  WriteList<SIBAWR64MeshOption>(out, itsAwr64Meshes);
  WriteList<SIBAWR64Port>(out, itsAwr64Ports);
  out << "END\n\n";
}

void SInterfaceBlock::WriteBody(SProjectStream& out) {
  if (itsVerbatim) {
    SVerbatimBlock::WriteBody(out);
    return;
  }
  const int format = Format();
  if (format >= 4) {
    if (itsHasMeshDefaults) {
      out << "MESHDFAWR ";
      out.Name(itsMeshName);
      for (int value : itsMeshValues) out << ' ' << value;
      out << SInterfaceWords::FlagWord(itsMeshFlag) << '\n';
    }
    WriteList<SIBMetal>(out, itsMetals);
    WriteList<SIBLayer>(out, itsLayers);
  }
  if (format >= 5) WritePlacement(out, "CDS", itsCadence, format);
  if (format >= 7) WritePlacement(out, "ADS", itsAds, format);
  if (format >= 18)
    for (const QString& name : itsShieldNames) {
      out << "CDSSHIELD ";
      out.Name(SString(name)) << '\n';
    }
  if (format >= 19)
    for (const QString& name : itsCapMetalNames) {
      out << "CDSCAPMETAL ";
      out.Name(SString(name)) << '\n';
    }
  if (format >= 16) {
    for (int line = 0; line < OptionLineCount; ++line) WriteOptions(out, line, format);
    if (!itsAdditionalOptions.isEmpty()) out << "CDSFASTSOLVEROPTIONSADDLOPTIONS " << itsAdditionalOptions << '\n';
  }
  if (format >= 20 && itsRemoteSimulation) out << "AWR64SIMPROGTYPE Remote\n";
  if (format >= 21) {
    WriteList<SIBLayerMapping>(out, itsLayerMappings);
    if (itsHasAwr64Project) WriteAwr64Section(out);
  }
}

#include "SMaterialTypeIO.h"

#include "SBrickType.h"
#include "SCircuit.h"
#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SMetalType.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"
#include "SViaMetalType.h"

#include "SDimensionBlock.h"

#include <QStringList>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

bool Value(SFile& file, SValueVarDouble& value, SProjectErrorManager& errors, int message) {
  return value.ReadValueToken(file) || ReadFault(errors, file, message);
}

// "INF" or a value; infinite leaves a conductivity of 0.
bool ReadConductivity(SFile& file, SValueVarDouble& conductivity, bool& infinite, SProjectErrorManager& errors) {
  SString token;
  if (!file.PeekToken(token)) return ReadFault(errors, file, 6155);
  if (token == "INF") {
    file.NextToken();
    infinite = true;
    conductivity.SetValue(0);
    return true;
  }
  infinite = false;
  return Value(file, conductivity, errors, 6155);
}

bool Conductivity(SFile& file, SMetalTypeData& metal, SProjectErrorManager& errors) {
  return ReadConductivity(file, metal.itsConductivity, metal.itsCondIsInf, errors);
}

// What may stand behind the fields of a metal line: a loss type, a direction, a roughness
// model. Unknown words are passed over, as older writers put other flags there.
void TrailingWords(SFile& file, SMetalTypeData& metal) {
  SString token;
  while (file.GetToken(token)) {
    if (token == "TDWN")
      metal.itsThickDirection = 1;
    else if (token == "TUP")
      metal.itsThickDirection = 0;
    else if (token == "SR" || token == "RR")
      metal.itsRoughnessModel = token == "RR" ? 1 : 0;
    else
      metal.LossType().SetFromKeyword(token);
  }
}

// Two sheets with the RR model carry one roughness on both faces.
void ShareRoughness(SMetalTypeData& metal) {
  if (metal.itsNumSheets.GetValue() == 2 && metal.itsRoughnessModel == 1)
    metal.itsTopRoughness.CopyValue(metal.itsBottomRoughness);
}

// The next file number in read order: metal and via types share one sequence, bricks have
// their own.
int NextId(const SCircuit& circuit, bool bricks) {
  int next = 0;
  for (size_t i = 0; i < circuit.GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = circuit.GetChild(i);
    const bool brick = child->isA() == SID_BRICKTYPE;
    SMaterialTypeData* type = SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(child));
    if (type != nullptr && brick == bricks) next = std::max(next, type->GetFileId() + 1);
  }
  return next;
}

// The model of a metal line from its keyword on.
bool ReadMetalModel(SFile& file, SMetalTypeData& metal, const SString& word, SProjectErrorManager& errors) {
  if (word == "WGLOAD") {
    metal.itsDefinition = SMetalTypeData::WGLoad;
    metal.itsModel = SMetalTypeData::General;
    metal.SetTypeName("WG Load");
    return true;
  }
  if (word == "FREESPACE") {
    // The numbers behind the word are fixed; they are written back the same way.
    metal.itsDefinition = SMetalTypeData::FreeSpace;
    metal.itsModel = SMetalTypeData::General;
    metal.SetTypeName("Free Space");
    metal.itsRdc.SetValue(376.7303136);
    return true;
  }
  if (word == "NOR" || word == "TMM") {
    metal.itsModel = word == "NOR" ? SMetalTypeData::Normal : SMetalTypeData::ThickMetal;
    if (!Conductivity(file, metal, errors) || !Value(file, metal.itsThickness, errors, 6156) ||
        !Value(file, metal.itsCurrentRatio, errors, 6083))
      return false;
    if (word == "TMM" && !Value(file, metal.itsNumSheets, errors, 6089)) return false;
    TrailingWords(file, metal);
    if (word == "TMM") ShareRoughness(metal);
    return true;
  }
  if (word == "ROG") {
    // The older rough form: ratio, bottom roughness, sheets, thickness, model, conductivity.
    metal.itsModel = SMetalTypeData::Rough;
    if (!Value(file, metal.itsCurrentRatio, errors, 6083) || !Value(file, metal.itsBottomRoughness, errors, 6184) ||
        !Value(file, metal.itsNumSheets, errors, 6089) || !Value(file, metal.itsThickness, errors, 6156))
      return false;
    SString token;
    if (file.PeekToken(token) && (token == "SR" || token == "RR")) {
      metal.itsRoughnessModel = token == "RR" ? 1 : 0;
      file.NextToken();
    }
    if (file.HasToken()) {
      if (!Conductivity(file, metal, errors)) return false;
    } else {
      metal.itsCondIsInf = false;
      metal.itsConductivity.SetValue(5.8e7);
    }
    ShareRoughness(metal);
    metal.itsRoughnessType = metal.itsNumSheets.GetValue() == 1 ? 1 : 0;
    return true;
  }
  if (word == "RUF") {
    metal.itsModel = SMetalTypeData::Rough;
    SString model;
    if (file.PeekToken(model) && (model == "THK" || model == "THN")) {
      metal.itsRoughnessType = model == "THN" ? 1 : 0;
      file.NextToken();
    }
    if (!Conductivity(file, metal, errors) || !Value(file, metal.itsCurrentRatio, errors, 6083) ||
        !Value(file, metal.itsTopRoughness, errors, 6184) || !Value(file, metal.itsBottomRoughness, errors, 6184) ||
        !Value(file, metal.itsThickness, errors, 6156))
      return false;
    TrailingWords(file, metal);
    return true;
  }
  const struct {
    const char* word;
    int model;
    int first;
    int fields;
  } kSimple[] = {{"RES", SMetalTypeData::Resistor, 0, 1},
                 {"NAT", SMetalTypeData::RdcRrf, 0, 2},
                 {"SUP", SMetalTypeData::General, 0, 4},
                 {"SEN", SMetalTypeData::Sense, 2, 1}};
  for (const auto& simple : kSimple) {
    if (word != simple.word) continue;
    metal.itsModel = simple.model;
    SValueVarDouble* fields[] = {&metal.itsRdc, &metal.itsRrf, &metal.itsXdc, &metal.itsLs};
    for (int i = simple.first; i < simple.first + simple.fields; ++i)
      if (!Value(file, *fields[i], errors, 6092 + i)) return false;
    return true;
  }
  return ReadFault(errors, file, 6187);
}

bool IsMetalWord(const SString& w) {
  for (const char* k : {"WGLOAD", "FREESPACE", "NOR", "TMM", "ROG", "RUF", "RES", "NAT", "SUP", "SEN"})
    if (w == k) return true;
  return false;
}

bool IsViaWord(const SString& w) { return w == "VOL" || w == "SFC" || w == "ARR"; }

bool ReadViaModel(SFile& file, SViaMetalType& via, const SString& word, SProjectErrorManager& errors) {
  SString token;
  if (word == "SFC") {
    via.itsModel = SViaMetalTypeData::Surface;
    return Value(file, via.itsRdc, errors, 6092) && Value(file, via.itsRrf, errors, 6093) &&
           Value(file, via.itsXdc, errors, 6094);
  }
  if (word == "ARR") {
    via.itsModel = SViaMetalTypeData::Array;
    if (!ReadConductivity(file, via.itsConductivity, via.itsCondIsInf, errors) ||
        !Value(file, via.itsFillFactor, errors, 6083))
      return false;
    if (file.GetToken(token)) via.LossType().SetFromKeyword(token);
    if (file.HasToken() && !Value(file, via.itsViaDensity, errors, 6083)) return false;
    if (file.GetToken(token)) via.itsLinkedMetalName = token;
    return true;
  }
  via.itsModel = SViaMetalTypeData::Volume;
  if (!ReadConductivity(file, via.itsConductivity, via.itsCondIsInf, errors)) return false;
  via.itsIsSolid = false;
  if (file.PeekToken(token) && token == "SOLID") {
    via.itsIsSolid = true;
    file.NextToken();
  }
  if (!Value(file, via.itsWallThickness, errors, 6156)) return false;
  if (file.GetToken(token)) via.LossType().SetFromKeyword(token);
  return true;
}

bool IsNumber(const SString& token) {
  const QByteArray bytes = token.toLatin1();
  double value = 0;
  char tail = 0;
  return std::sscanf(bytes.constData(), "%lf %c", &value, &tail) == 1;
}

// True when nothing but numbers is left on the line: the nameless metal lines of the
// oldest files, which the current form (with its model keyword) never is.
bool OnlyNumbersLeft(SFile& file) {
  SString rest;
  if (!file.GetRestOfLine(rest)) return false;
  const QStringList words = rest.qstring().simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  for (const QString& w : words)
    if (!IsNumber(SString(w))) return false;
  return !words.isEmpty();
}

SString Unquoted(SString text) {
  text = text.stripped();
  if (text.length() >= 2 && text.startsWith("\"") && text.endsWith("\"")) text = text.mid(1, text.length() - 2);
  return text;
}

// The oldest MET and RES lines: no name (a REN line may follow with one) and no pattern;
// Rdc and, in full, Rrf, Xdc, Ls.
bool ReadNamelessMetal(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  auto* metal = new SMetalType;
  SValueVarDouble* fields[] = {&metal->itsRdc, &metal->itsRrf, &metal->itsXdc, &metal->itsLs};
  int read = 0;
  for (; read < 4 && (read == 0 || file.HasToken()); ++read) {
    if (!Value(file, *fields[read], errors, 6092 + read)) {
      delete metal;
      return false;
    }
  }
  metal->SetModel(read == 1 ? SMetalTypeData::Resistor : SMetalTypeData::General);
  const int id = NextId(circuit, false);
  metal->SetTypeName(SString::format("Unnamed %d", id));
  metal->SetFileId(id);
  metal->SetProject(circuit.GetProject());
  circuit.AddObject(metal);
  return true;
}

// REN: pattern and name of the metal read last.
bool ReadMetalName(SFile& file, SCircuit& circuit, SProjectErrorManager& errors) {
  SMetalType* last = nullptr;
  for (size_t i = circuit.GetNumberOfChildren(); i-- > 0 && last == nullptr;)
    if (circuit.GetChild(i)->isA() == SID_METALTYPE && static_cast<SMetalType*>(circuit.GetChild(i))->GetFileId() >= 0)
      last = static_cast<SMetalType*>(circuit.GetChild(i));
  int pattern = 0;
  if (!file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
  if (last == nullptr) return ReadFault(errors, file, 6017, 6186);
  SString rest;
  file.GetRestOfLine(rest);
  rest = Unquoted(rest);
  if (rest.isEmpty()) return ReadFault(errors, file, 6091);
  last->SetPattern(pattern);
  last->SetTypeName(rest);
  return true;
}

}  // namespace

namespace SMaterialTypeIO {

SMaterialTypeData* AsMaterialType(SEnclosure* object) {
  if (object == nullptr) return nullptr;
  switch (object->isA()) {
  case SID_METALTYPE:
  case SID_READMETAL: return static_cast<SMetalType*>(object);
  case SID_VIAMETALTYPE: return static_cast<SViaMetalType*>(object);
  case SID_BRICKTYPE: return static_cast<SBrickType*>(object);
  default: return nullptr;
  }
}

void CreateBuiltInTypes(SCircuit& circuit) {
  SMetalType* lossless = new SMetalType("Lossless", SMetalTypeData::Lossless, 0, SMetalTypeData::General, 0, 0, 0, 0);
  SMetalType* load = new SMetalType("WG Load", SMetalTypeData::WGLoad, 0, SMetalTypeData::General, 0, 0, 0, 0);
  SMetalType* space =
      new SMetalType("Free Space", SMetalTypeData::FreeSpace, 0, SMetalTypeData::General, 376.7303136, 0, 0, 0);
  SViaMetalType* via = new SViaMetalType("Lossless", 0, true, true, SViaMetalTypeData::Volume, 0, 0);
  via->itsDefinition = 1;
  SBrickType* air = new SBrickType("Air", 1, 0);
  air->itsDefinition = SBrickTypeData::Air;
  for (SEnclosure* type : std::initializer_list<SEnclosure*>{lossless, load, space, via, air}) {
    AsMaterialType(type)->SetBuiltIn(true);
    AsMaterialType(type)->SetProject(circuit.GetProject());
    circuit.AddObject(type);
  }
  circuit.SetTopMetal(lossless);
  circuit.SetBottomMetal(lossless);
}

bool ReadMetalLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  if (SFileBlock::Match(keyword, "REN")) return ReadMetalName(file, circuit, errors);
  if (SFileBlock::Match(keyword, "RES") || OnlyNumbersLeft(file)) return ReadNamelessMetal(file, circuit, errors);
  SString name;
  int pattern = 0;
  // A line without a name has no pattern either.
  if (!file.GetToken(name) || !file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
  SString word;
  if (!file.GetToken(word)) return ReadFault(errors, file, 6157);
  if (IsViaWord(word)) {
    SViaMetalType scratch;
    scratch.SetTypeName(name);
    scratch.SetPattern(pattern);
    if (!ReadViaModel(file, scratch, word, errors)) return false;
    SViaMetalType* existing = circuit.FindViaMetalType(name);
    SViaMetalType* via = existing != nullptr ? existing : new SViaMetalType;
    static_cast<SViaMetalTypeData&>(*via) = static_cast<const SViaMetalTypeData&>(scratch);
    via->SetChanged(true);
    via->SetProject(circuit.GetProject());
    via->SetFileId(NextId(circuit, false));
    if (existing == nullptr) circuit.AddObject(via);
    return true;
  }
  if (!IsMetalWord(word)) return ReadFault(errors, file, 6187);
  SMetalType scratch;
  scratch.SetTypeName(name);
  scratch.SetPattern(pattern);
  if (!ReadMetalModel(file, scratch, word, errors)) return false;
  SMetalType* existing = circuit.FindMetalType(scratch.GetTypeName());
  SMetalType* metal = existing != nullptr ? existing : new SMetalType;
  // A built-in named by the line stays built in; a user metal of its name replaces it.
  const bool builtIn = existing != nullptr && existing->IsBuiltIn() && scratch.GetDefinition() != 0;
  static_cast<SMetalTypeData&>(*metal) = static_cast<const SMetalTypeData&>(scratch);
  metal->SetBuiltIn(builtIn);
  metal->SetProject(circuit.GetProject());
  metal->SetChanged(true);
  metal->SetFileId(NextId(circuit, false));
  if (existing == nullptr) circuit.AddObject(metal);
  return true;
}

bool ReadCoverLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  const SString key = keyword.upper();
  const int which = key.startsWith("T") ? 0 : 1;
  std::unique_ptr<SReadMetal> read(new SReadMetal);
  read->SetLocation(which == 0 ? SMetalTypeData::TopCover : SMetalTypeData::BottomCover);
  if (SFileBlock::Match(keyword, "TME") || SFileBlock::Match(keyword, "BME")) {
    SString name, word;
    int pattern = 0;
    if (!file.GetToken(name) || !file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
    read->SetTypeName(name);
    read->SetPattern(pattern);
    if (!file.GetToken(word)) return ReadFault(errors, file, 6157);
    if (!IsMetalWord(word)) return ReadFault(errors, file, 6187);
    if (!ReadMetalModel(file, *read, word, errors)) return false;
  } else if (SFileBlock::Match(keyword, "TON") || SFileBlock::Match(keyword, "BON")) {
    int pattern = 0;
    if (!file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
    SString rest;
    file.GetRestOfLine(rest);
    rest = Unquoted(rest);
    // The name line follows the model line of the same cover.
    if (SReadMetal* old = circuit.GetReadMetal(which))
      static_cast<SMetalTypeData&>(*read) = static_cast<const SMetalTypeData&>(*old);
    read->SetPattern(pattern);
    if (rest.isEmpty()) {
      const int def = read->GetDefinition();
      rest = def == SMetalTypeData::WGLoad ? "WG Load" : def == SMetalTypeData::FreeSpace ? "Free Space" : "Lossless";
    }
    read->SetTypeName(rest);
  } else if (SFileBlock::Match(keyword, "TOP") || SFileBlock::Match(keyword, "BOT")) {
    read->SetModel(SMetalTypeData::General);
    SValueVarDouble* fields[] = {&read->itsRdc, &read->itsRrf, &read->itsXdc, &read->itsLs};
    for (int i = 0; i < 4; ++i)
      if (!Value(file, *fields[i], errors, 6092 + i)) return false;
    bool zero = true;
    for (SValueVarDouble* f : fields) zero = zero && f->GetValue() == 0 && !f->HasEquation();
    read->SetTypeName(zero ? "Lossless" : which == 0 ? "Top Cover" : "Bottom Plane");
  } else {
    return ReadFault(errors, file, 6024);
  }
  circuit.SetReadMetal(which, read.release());
  return true;
}

bool ReadBrickLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  if (SFileBlock::Match(keyword, "PRN")) {
    SBrickType* last = nullptr;
    for (size_t i = circuit.GetNumberOfChildren(); i-- > 0;)
      if (circuit.GetChild(i)->isA() == SID_BRICKTYPE) {
        last = static_cast<SBrickType*>(circuit.GetChild(i));
        break;
      }
    if (last == nullptr || last->GetDefinition() == SBrickTypeData::Air) return ReadFault(errors, file, 6017, 6082);
    SString rest;
    file.GetRestOfLine(rest);
    rest = Unquoted(rest);
    if (!rest.isEmpty()) last->SetTypeName(rest);
    return true;
  }
  const bool older = SFileBlock::Match(keyword, "PRI") || SFileBlock::Match(keyword, "PRA");
  const bool isotropic = SFileBlock::Match(keyword, "BRI") || SFileBlock::Match(keyword, "PRI");
  const bool magnetic = SFileBlock::Match(keyword, "BRL");
  std::unique_ptr<SBrickType> brick(new SBrickType);
  brick->itsParmType = isotropic ? 1 : 0;
  SString name = "Unnamed";
  int pattern = 0;
  // The older forms carry no name here: a PRN line gives it.
  if ((!older && !file.GetToken(name)) || !file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
  brick->SetTypeName(name);
  brick->SetPattern(pattern);
  const int first = isotropic ? SBrickTypeData::Isotropic : SBrickTypeData::X;
  const int last = isotropic ? SBrickTypeData::Isotropic : SBrickTypeData::Z;
  for (int axis = first; axis <= last; ++axis) {
    if (!Value(file, brick->itsEps[axis], errors, 6084) || !Value(file, brick->itsLossTan[axis], errors, 6086) ||
        !Value(file, brick->itsLoss[axis], errors, 6088))
      return false;
    if (magnetic &&
        (!Value(file, brick->itsMuRel[axis], errors, 6085) || !Value(file, brick->itsMagLossTan[axis], errors, 6087)))
      return false;
  }
  SString token;
  if (file.GetToken(token)) brick->LossType().SetFromKeyword(token);
  brick->SetProject(circuit.GetProject());
  SBrickType* existing = circuit.FindBrickType(brick->GetTypeName());
  if (existing != nullptr && existing->GetDefinition() == SBrickTypeData::UserBrick) {
    static_cast<SBrickTypeData&>(*existing) = static_cast<const SBrickTypeData&>(*brick);
    existing->SetChanged(true);
    existing->SetFileId(NextId(circuit, true));
    return true;
  }
  brick->SetFileId(NextId(circuit, true));
  circuit.AddObject(brick.release());
  return true;
}

void ResolveViaLinks(SCircuit& circuit) {
  std::vector<SViaMetalType*> vias;
  circuit.CollectObjects(vias);
  for (SViaMetalType* via : vias) {
    if (via->itsLinkedMetalName.isEmpty()) continue;
    via->itsLinkedMetal = circuit.FindMetalType(via->itsLinkedMetalName);
  }
}

bool ResolveCovers(SCircuit& circuit, SProjectErrorManager& errors) {
  (void)errors;
  for (int which = 0; which < 2; ++which) {
    SReadMetal* read = circuit.GetReadMetal(which);
    if (read == nullptr) continue;
    SMetalType* type = circuit.FindMetalType(read->GetTypeName());
    if (type == nullptr) {
      // The read data starts from the defaults that "Lossless" has as well.
      type = new SMetalType;
      static_cast<SMetalTypeData&>(*type) = static_cast<const SMetalTypeData&>(*read);
      type->SetLocation(SMetalTypeData::PlainMetal);
      type->SetFileId(-2);
      type->SetProject(circuit.GetProject());
      circuit.AddObject(type);
    }
    if (which == 0)
      circuit.SetTopMetal(type);
    else
      circuit.SetBottomMetal(type);
    circuit.SetReadMetal(which, nullptr);
  }
  ResolveViaLinks(circuit);
  return true;
}

void DeleteReadMetal(SReadMetal* data) { delete data; }

void WriteConductiveLoss(SProjectStream& out, const SValueVarDouble& value, bool infinite, int lossCode,
                         const SValueVarDouble* thickness, int format, const SDimensionBlock* dim,
                         bool streamDigits) {
  if (infinite) {
    out << "INF ";
    return;
  }
  if (value.HasEquation()) {
    value.WriteValue(out);
  } else if (format < 15 && dim != nullptr) {
    const double v = value.GetValue();
    double sigma = 0;
    if (lossCode == SElectricalLossType::Resistivity) {
      // The resistivity family counts in ohm cm.
      const double rho = dim->ToBase(SDimensionBlock::Resistivity, v) * 0.01;
      sigma = rho > 0 ? 1.0 / rho : 0.0;
    } else if (lossCode == SElectricalLossType::SheetResistance) {
      const double rs = dim->ToBase(SDimensionBlock::SheetResistance, v);
      const double t = thickness != nullptr ? dim->ToBase(SDimensionBlock::Length, thickness->GetValue()) : 0.0;
      sigma = rs > 0 && t > 0 ? 1.0 / (rs * t) : 0.0;
    } else if (lossCode == SElectricalLossType::ResistancePerVia) {
      sigma = v;
    } else {
      sigma = dim->ToBase(SDimensionBlock::Conductivity, v);
    }
    out << sigma;
  } else if (streamDigits) {
    out << value.GetValue();
  } else {
    value.WriteValue(out);
  }
  out << ' ';
}

void WriteLength(SProjectStream& out, const SValueVarDouble& value, const SDimensionBlock* dim) {
  const double factor = dim != nullptr ? dim->ToFileLength(1.0) : 1.0;
  if (factor == 1.0 || value.HasEquation()) return value.WriteValue(out);
  SValueVarDouble scaled(value);
  scaled.SetValue(value.GetValue() * factor);
  scaled.WriteValue(out);
}

void WriteCovers(SProjectStream& out, SCircuit& circuit, int format) {
  SMetalType* covers[] = {circuit.GetTopMetal(), circuit.GetBottomMetal()};
  for (int which = 0; which < 2; ++which) {
    SMetalType* type = covers[which] != nullptr ? covers[which] : circuit.GetLosslessMetal();
    if (type == nullptr) continue;
    const int saved = type->GetLocation();
    type->SetLocation(which == 0 ? SMetalTypeData::TopCover : SMetalTypeData::BottomCover);
    type->Write(out, format, circuit.GetDimensions());
    type->SetLocation(saved);
  }
}

void NumberAndWriteTypes(SProjectStream& out, SCircuit& circuit, int format) {
  std::vector<SMetalType*> metals;
  std::vector<SViaMetalType*> vias;
  std::vector<SBrickType*> bricks;
  circuit.CollectObjects(metals);
  circuit.CollectObjects(vias);
  circuit.CollectObjects(bricks);
  int nextMetal = 0, nextBrick = 0;
  // Types of a technology file take their numbers first, in the order of the list.
  for (size_t i = 0; i < circuit.GetNumberOfChildren(); ++i) {
    SBaseEnclosure* child = circuit.GetChild(i);
    SMaterialTypeData* type = AsMaterialType(static_cast<SEnclosure*>(child));
    if (type == nullptr || !static_cast<SEnclosure*>(child)->IsFromSTF()) continue;
    if (child->isA() == SID_METALTYPE && static_cast<SMetalType*>(child)->GetDefinition() == 0)
      type->SetFileId(nextMetal++);
    else if (child->isA() == SID_VIAMETALTYPE && static_cast<SViaMetalType*>(child)->GetDefinition() == 0)
      type->SetFileId(nextMetal++);
    else if (child->isA() == SID_BRICKTYPE && static_cast<SBrickType*>(child)->GetDefinition() == 0)
      type->SetFileId(nextBrick++);
  }
  const SDimensionBlock* dim = circuit.GetDimensions();
  for (SMetalType* m : metals) {
    if (m->isA() == SID_READMETAL) continue;
    if (m->GetDefinition() == SMetalTypeData::Lossless) {
      m->SetFileId(-1);
      continue;
    }
    if (!m->IsChanged()) continue;
    if (!m->IsFromSTF()) m->SetFileId(-2);
    if (m->GetDefinition() != 0) continue;
    // A cover needs a line only when polygons or technology layers name it too.
    const bool cover = m == circuit.GetTopMetal() || m == circuit.GetBottomMetal();
    if (cover && !circuit.IsMaterialUsed(m)) continue;
    m->Write(out, format, dim);
    if (!m->IsFromSTF()) m->SetFileId(nextMetal++);
  }
  for (SViaMetalType* v : vias) {
    if (v->GetDefinition() == 1) {
      v->SetFileId(-1);
      continue;
    }
    if (!v->IsChanged()) continue;
    v->SetFileId(-2);
    // Formats below 11 have no via metal line (and below 3 asking for one is a program error).
    if (format >= 11) v->Write(out, format, dim);
    if (!v->IsFromSTF()) v->SetFileId(nextMetal++);
  }
  for (SBrickType* b : bricks) {
    if (b->GetDefinition() == SBrickTypeData::Air) {
      b->SetFileId(-1);
      continue;
    }
    if (!b->IsChanged()) continue;
    if (!b->IsFromSTF()) b->SetFileId(-2);
    if (b->GetDefinition() != 0) continue;
    b->Write(out, format, dim);
    if (!b->IsFromSTF()) b->SetFileId(nextBrick++);
  }
}

}  // namespace SMaterialTypeIO

// ---- the circuit's type lookups

void SCircuitData::SetReadMetal(int which, SReadMetal* data) {
  if (itsReadMetal[which] != data) SMaterialTypeIO::DeleteReadMetal(itsReadMetal[which]);
  itsReadMetal[which] = data;
}

SMetalType* SCircuit::FindMetalType(const SString& name) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_METALTYPE && static_cast<SMetalType*>(GetChild(i))->GetTypeName() == name)
      return static_cast<SMetalType*>(GetChild(i));
  return nullptr;
}

SViaMetalType* SCircuit::FindViaMetalType(const SString& name) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_VIAMETALTYPE && static_cast<SViaMetalType*>(GetChild(i))->GetTypeName() == name)
      return static_cast<SViaMetalType*>(GetChild(i));
  return nullptr;
}

SBrickType* SCircuit::FindBrickType(const SString& name) const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_BRICKTYPE && static_cast<SBrickType*>(GetChild(i))->GetTypeName() == name)
      return static_cast<SBrickType*>(GetChild(i));
  return nullptr;
}

SMetalType* SCircuit::GetLosslessMetal() const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_METALTYPE &&
        static_cast<SMetalType*>(GetChild(i))->GetDefinition() == SMetalTypeData::Lossless)
      return static_cast<SMetalType*>(GetChild(i));
  return nullptr;
}

SViaMetalType* SCircuit::GetLosslessVia() const {
  for (size_t i = 0; i < GetNumberOfChildren(); ++i)
    if (GetChild(i)->isA() == SID_VIAMETALTYPE && static_cast<SViaMetalType*>(GetChild(i))->GetDefinition() == 1)
      return static_cast<SViaMetalType*>(GetChild(i));
  return nullptr;
}

void SCircuit::SortTypes() {
  // Types keep their places among the other objects; only their order among themselves
  // follows the file numbers.
  if (!itsChildren) return;
  std::vector<size_t> slots;
  std::vector<SCollectable*> types;
  for (size_t i = 0; i < itsChildren->entries(); ++i) {
    if (SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(GetChild(i))) != nullptr) {
      slots.push_back(i);
      types.push_back(itsChildren->at(i));
    }
  }
  std::stable_sort(types.begin(), types.end(), [](SCollectable* a, SCollectable* b) {
    const int ka = a->isA() == SID_BRICKTYPE ? 1 : 0, kb = b->isA() == SID_BRICKTYPE ? 1 : 0;
    if (ka != kb) return ka < kb;
    return SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(a))->GetFileId() <
           SMaterialTypeIO::AsMaterialType(static_cast<SEnclosure*>(b))->GetFileId();
  });
  for (size_t k = 0; k < slots.size(); ++k) itsChildren->at(slots[k]) = types[k];
}

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

#include <algorithm>

namespace {



bool Value(SFile& file, SValueVarDouble& value, SProjectErrorManager& errors, int message) {
  return value.ReadValueToken(file) || ReadFault(errors, file, message);
}

// "INF" or a value.
bool Conductivity(SFile& file, SMetalTypeData& metal, SProjectErrorManager& errors) {
  SString token;
  if (!file.PeekToken(token)) return ReadFault(errors, file, 6155);
  if (token.upper() == "INF") {
    file.NextToken();
    metal.itsCondIsInf = true;
    metal.itsConductivity.SetValue(0);
    return true;
  }
  metal.itsCondIsInf = false;
  return Value(file, metal.itsConductivity, errors, 6155);
}

// Trailing words of NOR and TMM: a loss type, a direction.
void TrailingWords(SFile& file, SMetalTypeData& metal) {
  SString token;
  while (file.GetUpperToken(token)) {
    if (token == "TDWN")
      metal.itsThickDirection = 1;
    else if (token == "TUP")
      metal.itsThickDirection = 0;
    else
      metal.LossType().SetFromKeyword(token);
  }
}

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

// The model of a metal line from its keyword on. `word` is the keyword, already upper case.
bool ReadMetalModel(SFile& file, SMetalTypeData& metal, const SString& word, SProjectErrorManager& errors) {
  if (word == "WGLOAD") {
    metal.itsDefinition = SMetalTypeData::WGLoad;
    metal.itsSpecification = SMetalTypeData::General;
    metal.SetTypeName("WG Load");
    return true;
  }
  if (word == "FREESPACE") {
    metal.itsDefinition = SMetalTypeData::FreeSpace;
    metal.itsSpecification = SMetalTypeData::General;
    metal.SetTypeName("Free Space");
    metal.itsRdc.SetValue(376.7303136);
    return true;
  }
  if (word == "NOR" || word == "TMM") {
    metal.itsSpecification = word == "NOR" ? SMetalTypeData::Normal : SMetalTypeData::ThickMetal;
    if (!Conductivity(file, metal, errors) || !Value(file, metal.itsThickness, errors, 6156) ||
        !Value(file, metal.itsCurrentRatio, errors, 6083))
      return false;
    if (word == "TMM" && !Value(file, metal.itsNumSheets, errors, 6089)) return false;
    TrailingWords(file, metal);
    return true;
  }
  if (word == "RUF") {
    metal.itsSpecification = SMetalTypeData::Rough;
    SString model;
    file.GetUpperToken(model);
    metal.itsRoughnessType = model == "THN" ? 1 : 0;
    if (!Conductivity(file, metal, errors) || !Value(file, metal.itsCurrentRatio, errors, 6083) ||
        !Value(file, metal.itsTopRoughness, errors, 6184) || !Value(file, metal.itsBottomRoughness, errors, 6184) ||
        !Value(file, metal.itsThickness, errors, 6156))
      return false;
    TrailingWords(file, metal);
    return true;
  }
  if (word == "ROG") {
    // The older rough form: ratio, bottom roughness, sheets, thickness, model, conductivity.
    metal.itsSpecification = SMetalTypeData::Rough;
    if (!Value(file, metal.itsCurrentRatio, errors, 6083) || !Value(file, metal.itsBottomRoughness, errors, 6184) ||
        !Value(file, metal.itsNumSheets, errors, 6089) || !Value(file, metal.itsThickness, errors, 6156))
      return false;
    SString token;
    if (file.PeekToken(token) && (token.upper() == "SR" || token.upper() == "RR")) {
      metal.itsRoughnessModel = token.upper() == "RR" ? 1 : 0;
      file.NextToken();
    }
    if (file.HasToken()) {
      if (!Conductivity(file, metal, errors)) return false;
    } else {
      metal.itsCondIsInf = false;
      metal.itsConductivity.SetValue(5.8e7);
    }
    if (metal.itsNumSheets.GetValue() == 2 && metal.itsRoughnessModel == 1)
      metal.itsTopRoughness.CopyValue(metal.itsBottomRoughness);
    metal.itsRoughnessType = metal.itsNumSheets.GetValue() == 1 ? 1 : 0;
    return true;
  }
  const struct {
    const char* word;
    int spec;
    int fields;
  } kSimple[] = {{"RES", SMetalTypeData::Resistor, 1}, {"NAT", SMetalTypeData::RdcRrf, 2},
                 {"SUP", SMetalTypeData::General, 4}, {"SEN", SMetalTypeData::Sense, 1}};
  for (const auto& simple : kSimple) {
    if (word != simple.word) continue;
    metal.itsSpecification = simple.spec;
    if (simple.spec == SMetalTypeData::Sense) return Value(file, metal.itsXdc, errors, 6094);
    SValueVarDouble* fields[] = {&metal.itsRdc, &metal.itsRrf, &metal.itsXdc, &metal.itsLs};
    for (int i = 0; i < simple.fields; ++i)
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

bool ReadViaModel(SFile& file, SViaMetalType& via, const SString& word, SProjectErrorManager& errors) {
  auto conductivity = [&]() {
    SString token;
    if (!file.PeekToken(token)) return ReadFault(errors, file, 6155);
    if (token.upper() == "INF") {
      file.NextToken();
      via.itsCondIsInf = true;
      return true;
    }
    via.itsCondIsInf = false;
    return Value(file, via.itsConductivity, errors, 6155);
  };
  SString token;
  if (word == "SFC") {
    via.itsSpecification = SViaMetalTypeData::Surface;
    return Value(file, via.itsRdc, errors, 6092) && Value(file, via.itsRrf, errors, 6093) &&
           Value(file, via.itsXdc, errors, 6094);
  }
  if (word == "ARR") {
    via.itsSpecification = SViaMetalTypeData::Array;
    if (!conductivity() || !Value(file, via.itsFillFactor, errors, 6083)) return false;
    if (file.GetToken(token)) via.LossType().SetFromKeyword(token);
    if (file.HasToken() && !Value(file, via.itsViaDensity, errors, 6083)) return false;
    if (file.GetToken(token)) via.itsLinkedMetalName = token;
    return true;
  }
  via.itsSpecification = SViaMetalTypeData::Volume;
  if (!conductivity()) return false;
  via.itsIsSolid = false;
  if (file.PeekToken(token) && token.upper() == "SOLID") {
    via.itsIsSolid = true;
    file.NextToken();
  }
  if (!Value(file, via.itsWallThickness, errors, 6156)) return false;
  if (file.GetToken(token)) via.LossType().SetFromKeyword(token);
  return true;
}

void Adopt(SCircuit& circuit, SEnclosure* type) { circuit.AddObject(type); }

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
    Adopt(circuit, type);
  }
  circuit.SetTopMetal(lossless);
  circuit.SetBottomMetal(lossless);
}

bool ReadMetalLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  const SString key = keyword.upper();
  SString name;
  int pattern = 0;
  if (key.startsWith("REN")) {
    // Older: a name and a pattern only, for the last metal read.
    file.GetToken(name);
    return true;
  }
  if (!file.GetToken(name)) return ReadFault(errors, file, 6091);
  if (!file.GetInt(pattern) || pattern < 0) return ReadFault(errors, file, 6090);
  SString word;
  if (!file.GetUpperToken(word)) return ReadFault(errors, file, 6157);
  if (word == "VOL" || word == "SFC" || word == "ARR") {
    SViaMetalType* existing = circuit.FindViaMetalType(name);
    SViaMetalType* via = existing != nullptr ? existing : new SViaMetalType;
    via->SetTypeName(name);
    via->SetPattern(pattern);
    if (!ReadViaModel(file, *via, word, errors)) {
      if (existing == nullptr) delete via;
      return false;
    }
    via->SetChanged(true);
    if (existing == nullptr) {
      via->SetFileId(NextId(circuit, false));
      via->SetProject(circuit.GetProject());
      Adopt(circuit, via);
    }
    return true;
  }
  if (!IsMetalWord(word)) return ReadFault(errors, file, 6187);
  SMetalType scratch;
  scratch.SetTypeName(name);
  scratch.SetPattern(pattern);
  if (!ReadMetalModel(file, scratch, word, errors)) return false;
  SMetalType* existing = circuit.FindMetalType(scratch.GetTypeName());
  SMetalType* metal = existing != nullptr ? existing : new SMetalType;
  static_cast<SMetalTypeData&>(*metal) = static_cast<const SMetalTypeData&>(scratch);
  metal->SetChanged(true);
  if (existing == nullptr || existing->GetFileId() < 0) metal->SetFileId(NextId(circuit, false));
  if (existing == nullptr) {
    metal->SetProject(circuit.GetProject());
    Adopt(circuit, metal);
  }
  return true;
}

bool ReadCoverLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  const SString key = keyword.upper();
  const int which = key.startsWith("T") ? 0 : 1;
  SReadMetal* read = new SReadMetal;
  read->SetLocation(which == 0 ? SMetalTypeData::TopCover : SMetalTypeData::BottomCover);
  if (key.startsWith("TME") || key.startsWith("BME")) {
    SString name, word;
    int pattern = 0;
    if (!file.GetToken(name)) {
      delete read;
      return ReadFault(errors, file, 6091);
    }
    if (!file.GetInt(pattern) || pattern < 0) {
      delete read;
      return ReadFault(errors, file, 6090);
    }
    read->SetTypeName(name);
    read->SetPattern(pattern);
    if (!file.GetUpperToken(word)) {
      delete read;
      return ReadFault(errors, file, 6157);
    }
    if (!IsMetalWord(word)) {
      delete read;
      return ReadFault(errors, file, 6187);
    }
    if (!ReadMetalModel(file, *read, word, errors)) {
      delete read;
      return false;
    }
  } else if (key.startsWith("TON") || key.startsWith("BON")) {
    int pattern = 0;
    if (!file.GetInt(pattern) || pattern < 0) {
      delete read;
      return ReadFault(errors, file, 6090);
    }
    SString rest;
    file.GetRestOfLine(rest);
    rest = rest.stripped();
    if (rest.startsWith("\"") && rest.endsWith("\"") && rest.length() >= 2) rest = rest.mid(1, rest.length() - 2);
    SReadMetal* old = circuit.GetReadMetal(which);
    if (old != nullptr) static_cast<SMetalTypeData&>(*read) = static_cast<const SMetalTypeData&>(*old);
    read->SetPattern(pattern);
    if (rest.isEmpty()) {
      const int def = read->GetDefinition();
      rest = def == SMetalTypeData::WGLoad ? "WG Load" : def == SMetalTypeData::FreeSpace ? "Free Space" : "Lossless";
    }
    read->SetTypeName(rest);
  } else if (key.startsWith("TOP") || key.startsWith("BOT")) {
    read->SetSpecification(SMetalTypeData::General);
    SValueVarDouble* fields[] = {&read->itsRdc, &read->itsRrf, &read->itsXdc, &read->itsLs};
    for (int i = 0; i < 4; ++i) {
      if (!Value(file, *fields[i], errors, 6092 + i)) {
        delete read;
        return false;
      }
    }
    bool zero = true;
    for (SValueVarDouble* f : fields) zero = zero && f->GetValue() == 0 && !f->HasEquation();
    read->SetTypeName(zero ? "Lossless" : which == 0 ? "Top Cover" : "Bottom Plane");
  } else {
    delete read;
    return ReadFault(errors, file, 6024);
  }
  circuit.SetReadMetal(which, read);
  return true;
}

bool ReadBrickLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors) {
  const SString key = keyword.upper();
  if (key.startsWith("PRN")) {
    SBrickType* last = nullptr;
    for (size_t i = circuit.GetNumberOfChildren(); i-- > 0;)
      if (circuit.GetChild(i)->isA() == SID_BRICKTYPE) {
        last = static_cast<SBrickType*>(circuit.GetChild(i));
        break;
      }
    if (last == nullptr || last->GetDefinition() == SBrickTypeData::Air) return ReadFault(errors, file, 6017, 6082);
    SString rest;
    file.GetRestOfLine(rest);
    last->SetTypeName(rest.stripped());
    return true;
  }
  const bool older = key.startsWith("PR");
  const bool isotropic = key.startsWith("BRI") || key.startsWith("PRI");
  const bool magnetic = key.startsWith("BRL");
  SBrickType* brick = new SBrickType;
  brick->itsParmType = isotropic ? 1 : 0;
  SString name = "Unnamed";
  if (!older && !file.GetToken(name)) {
    delete brick;
    return ReadFault(errors, file, 6091);
  }
  int pattern = 0;
  if (!file.GetInt(pattern) || pattern < 0) {
    delete brick;
    return ReadFault(errors, file, 6090);
  }
  brick->SetTypeName(name);
  brick->SetPattern(pattern);
  const int first = isotropic ? SBrickTypeData::Isotropic : SBrickTypeData::X;
  const int last = isotropic ? SBrickTypeData::Isotropic : SBrickTypeData::Z;
  for (int axis = first; axis <= last; ++axis) {
    if (!Value(file, brick->itsEps[axis], errors, 6084) || !Value(file, brick->itsLossTan[axis], errors, 6086) ||
        !Value(file, brick->itsLoss[axis], errors, 6088)) {
      delete brick;
      return false;
    }
    if (magnetic &&
        (!Value(file, brick->itsMuRel[axis], errors, 6085) || !Value(file, brick->itsMagLossTan[axis], errors, 6087))) {
      delete brick;
      return false;
    }
  }
  SString token;
  if (file.GetToken(token)) brick->LossType().SetFromKeyword(token);
  SBrickType* existing = circuit.FindBrickType(brick->GetTypeName());
  if (existing != nullptr && existing->GetDefinition() == SBrickTypeData::UserBrick) {
    static_cast<SBrickTypeData&>(*existing) = static_cast<const SBrickTypeData&>(*brick);
    existing->SetChanged(true);
    delete brick;
    return true;
  }
  brick->SetFileId(NextId(circuit, true));
  brick->SetProject(circuit.GetProject());
  Adopt(circuit, brick);
  return true;
}

bool ResolveCovers(SCircuit& circuit, SProjectErrorManager& errors) {
  (void)errors;
  for (int which = 0; which < 2; ++which) {
    SReadMetal* read = circuit.GetReadMetal(which);
    if (read == nullptr) continue;
    SMetalType* type = circuit.FindMetalType(read->GetTypeName());
    if (type == nullptr) {
      type = new SMetalType;
      static_cast<SMetalTypeData&>(*type) = static_cast<const SMetalTypeData&>(*read);
      type->SetLocation(SMetalTypeData::PlainMetal);
      type->SetProject(circuit.GetProject());
      circuit.AddObject(type);
    }
    if (which == 0)
      circuit.SetTopMetal(type);
    else
      circuit.SetBottomMetal(type);
    circuit.SetReadMetal(which, nullptr);
  }
  return true;
}

void DeleteReadMetal(SReadMetal* data) { delete data; }

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
  // Types of a technology file keep their numbers first.
  for (SMetalType* m : metals)
    if (m->IsFromSTF() && m->GetDefinition() == 0) m->SetFileId(nextMetal++);
  for (SViaMetalType* v : vias)
    if (v->IsFromSTF() && v->GetDefinition() == 0) v->SetFileId(nextMetal++);
  for (SBrickType* b : bricks)
    if (b->IsFromSTF() && b->GetDefinition() == 0) b->SetFileId(nextBrick++);
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
    v->Write(out, format, dim);
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

#include "SSubdivisionBlock.h"

#include "SCircuit.h"
#include "SDimensionBlock.h"
#include "SFile.h"
#include "SFrequencyBlock.h"
#include "SFrequencyEntry.h"
#include "SLevel.h"
#include "SMetalPolygon.h"
#include "SProject.h"
#include "SProjectClassID.h"
#include "SProjectErrorManager.h"
#include "SSubdivisionLine.h"
#include "SValvarLine.h"
#include "SVariableSweep.h"
#include "SVariableSweepBlock.h"
#include "SVeloraTrace.h"

#include <QDir>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>

SCOLLECTABLE_DEFINE(SSubdivisionBlock, SID_SUBDIVISIONBLOCK, &SFileBlock::staticTypeInfo())

namespace {
const char kModeLetters[] = "AFN";
const char* const kBaseName = "$BASENAME";
const double kSpeedOfLight = 299792458.0;
const int kFewestCells = 8;
}  // namespace

SSubdivisionBlock::SSubdivisionBlock(const SSubdivisionBlock& other)
    : SFileBlock(other), itsMainName(other.itsMainName), itsNames(other.itsNames),
      itsRefPlaneMode(other.itsRefPlaneMode), itsRefPlaneLength(other.itsRefPlaneLength) {
  for (const SSubdivisionLine* line : other.itsLines) itsLines.push_back(line->Clone());
}

SSubdivisionBlock::~SSubdivisionBlock() {
  for (SSubdivisionLine* line : itsLines) delete line;
}

void SSubdivisionBlock::SetLines(const std::vector<SSubdivisionLine*>& lines) {
  for (SSubdivisionLine* line : itsLines)
    if (std::find(lines.begin(), lines.end(), line) == lines.end()) delete line;
  itsLines = lines;
}

// ---- names

SString SSubdivisionBlock::ProjectDirectory() const { return SValvarLine::ProjectDirectory(itsOwner); }

SString SSubdivisionBlock::ProjectBaseName() const {
  return itsOwner ? itsOwner->GetFileName().GetBaseName() : SString();
}

SString SSubdivisionBlock::NameFromFile(const SString& text) const {
  QString name = text.qstring();
  const SString base = ProjectBaseName();
  if (!base.isEmpty()) name.replace(QLatin1String(kBaseName), base.qstring());
  const SString directory = ProjectDirectory();
  if (directory.isEmpty() || QDir::isAbsolutePath(name)) return SString(name);
  return SString(QDir::cleanPath(QDir(directory.qstring()).absoluteFilePath(name)));
}

SString SSubdivisionBlock::NameToFile(const SString& name) const {
  QString text = name.qstring();
  const SString directory = ProjectDirectory();
  if (!directory.isEmpty() && QDir::isAbsolutePath(text)) {
    const QString relative = QDir(directory.qstring()).relativeFilePath(text);
    // A name outside the project's directory stays as it is.
    if (!relative.startsWith(QLatin1String(".."))) text = relative == QLatin1String(".") ? QString() : relative;
  }
  const SString base = ProjectBaseName();
  if (!base.isEmpty()) text.replace(base.qstring(), QLatin1String(kBaseName));
  if (text.isEmpty()) text = QString(QLatin1String(kBaseName)) + QLatin1String("_net");
  return SString(text);
}

void SSubdivisionBlock::MakeSubprojectNames() {
  if (itsMainName.isEmpty()) return;
  const SString stem = itsMainName.GetWithoutExtension();
  const SString extension = itsMainName.GetExtension();
  itsNames.clear();
  for (size_t i = 1; i <= itsLines.size() + 1; ++i)
    itsNames.emplace_back(static_cast<int>(i), SString::format("%s_s%zd.%s", stem.data(), i, extension.data()));
}

// ---- reading and writing

bool SSubdivisionBlock::ReadBody(SFile& file, SProjectErrorManager& errors) {
  itsMainName = SFileName();
  itsNames.clear();
  SetLines({});
  itsRefPlaneMode = AutoRefPlane;
  itsRefPlaneLength = 0.0;
  // A bad number or a missing name ends the entries; the rest up to the block's end goes.
  const auto stop = [&file, &errors](int message) {
    errors.AddError(SProjectErrorManager::Warning, LineOf(file), message);
    SString token;
    while (!(file.PeekToken(token) && Match(token, "END")))
      if (!file.NextLine()) break;
    return true;
  };
  for (;;) {
    SString word;
    if (!file.PeekToken(word)) {
      if (!file.NextLine()) return true;
      continue;
    }
    if (Match(word, "END")) return true;
    file.NextToken();
    if (Match(word, "MAIN")) {
      SString name;
      if (!file.GetToken(name) || name.isEmpty()) return stop(7195);
      itsMainName = NameFromFile(name);
    } else if (Match(word, "NAME")) {
      int index = 0;
      SString name;
      if (!file.GetIntStrict(index) || index < 0) return stop(7192);
      if (!file.GetToken(name) || name.isEmpty()) return stop(7195);
      const auto same = [index](const std::pair<int, SString>& entry) { return entry.first == index; };
      itsNames.erase(std::remove_if(itsNames.begin(), itsNames.end(), same), itsNames.end());
      itsNames.emplace_back(index, NameFromFile(name));
      std::sort(itsNames.begin(), itsNames.end(),
                [](const std::pair<int, SString>& a, const std::pair<int, SString>& b) { return a.first < b.first; });
    } else if (Match(word, "LINE")) {
      int id = 0;
      double position = 0.0;
      SString direction;
      if (!file.GetIntStrict(id) || id < 0) return stop(7192);
      if (!file.GetDoubleStrict(position)) {
        errors.AddError(SProjectErrorManager::Error, LineOf(file), 7203);
        return false;
      }
      file.GetUpperToken(direction);
      if (direction != "V" && direction != "H") {
        errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7194);
      } else {
        const int across = direction == "V" ? SSubdivisionLine::Vertical : SSubdivisionLine::Horizontal;
        SSubdivisionLine* line = new SSubdivisionLine(position, across, id);
        line->SetLine(LineOf(file));
        itsLines.push_back(line);
      }
    } else if (Match(word, "REFPLANE")) {
      SString letter;
      file.GetUpperToken(letter);
      const char* found = letter.length() == 1 ? std::strchr(kModeLetters, letter.data()[0]) : nullptr;
      if (found == nullptr || *found == '\0') {
        errors.AddError(SProjectErrorManager::Warning, LineOf(file), 7194);
      } else {
        const int mode = static_cast<int>(found - kModeLetters);
        double length = 0.0;
        // Without reference planes the length may be left out.
        if (!(mode == NoRefPlane && !file.HasToken()) && !file.GetDoubleStrict(length)) {
          errors.AddError(SProjectErrorManager::Error, LineOf(file), 7203);
          return false;
        }
        SetRefPlane(mode, length);
      }
    }
    if (!file.NextLine()) return true;
  }
}

bool SSubdivisionBlock::Write(SProjectStream& out) {
  if (itsLines.empty()) return true;
  return SFileBlock::Write(out);
}

void SSubdivisionBlock::WriteBody(SProjectStream& out) {
  if (!itsMainName.isEmpty()) {
    out << "MAIN ";
    out.Name(NameToFile(itsMainName));
    out << '\n';
  }
  const int mode = itsRefPlaneMode >= AutoRefPlane && itsRefPlaneMode <= NoRefPlane ? itsRefPlaneMode : AutoRefPlane;
  out << "REFPLANE " << kModeLetters[mode] << ' ' << itsRefPlaneLength << '\n';
  for (const auto& entry : itsNames) {
    out << "NAME " << entry.first << ' ';
    out.Name(NameToFile(entry.second));
    out << '\n';
  }
  for (const SSubdivisionLine* line : itsLines)
    out << "LINE " << static_cast<long long>(line->GetId()) << ' ' << line->GetPosition() << ' '
        << (line->IsVertical() ? 'V' : 'H') << " \n";
}

// ---- reference planes

double SSubdivisionBlock::GetMaxGap(double total) const {
  std::vector<double> positions;
  for (const SSubdivisionLine* line : itsLines) positions.push_back(line->GetPosition());
  std::sort(positions.begin(), positions.end());
  double previous = 0.0;
  double gap = 0.0;
  for (double position : positions) {
    gap = std::max(gap, position - previous);
    previous = position;
  }
  return std::max(gap, total - previous);
}

bool SSubdivisionBlock::GetCutAxis(double& size, int& cells) {
  SCircuit* circuit = itsOwner ? itsOwner->GetCircuit() : nullptr;
  if (circuit == nullptr) return false;
  const bool across = itsLines.empty() || itsLines.front()->IsVertical();
  size = across ? circuit->GetBoxSize().width() : circuit->GetBoxSize().height();
  cells = across ? circuit->GetNumCellsX() : circuit->GetNumCellsY();
  return size > 0.0 && cells > 0;
}

int SSubdivisionBlock::GetRefPlaneCells() {
  if (itsRefPlaneMode == NoRefPlane) return 0;
  double size = 0.0;
  int cells = 0;
  if (!GetCutAxis(size, cells)) return 0;
  return static_cast<int>(itsRefPlaneLength / (size / cells) + 0.5);
}

double SSubdivisionBlock::TopFrequency() {
  if (itsOwner == nullptr) return 0.0;
  std::vector<double> frequencies;
  SFrequencyBlock* block = itsOwner->GetFrequencyBlock();
  if (block->IsPresent()) block->GetAllFrequencies(frequencies);
  // A read moves FREQ's entries into the sweep sets.
  SVariableSweepBlock* sweeps = itsOwner->GetVariableSweepBlock();
  for (size_t i = 0; frequencies.empty() && i < sweeps->Count(); ++i)
    for (const SCollectable* entry : sweeps->Get(i)->GetEntries())
      static_cast<const SFrequencyEntry*>(entry)->GetFrequencies(frequencies);
  if (frequencies.empty()) return 0.0;
  return *std::max_element(frequencies.begin(), frequencies.end()) *
         itsOwner->GetDimensionBlock()->GetFactor(SDimensionBlock::Frequency);
}

int SSubdivisionBlock::SuggestRefPlane() {
  VeloraTrace(2, TRACE_GENERAL, "Beginning Calculate Sugested Ref Plane.");
  double size = 0.0;
  int cells = 0;
  int half = 0;
  const double top = TopFrequency();
  if (GetCutAxis(size, cells)) {
    const double cellSize = size / cells;
    half = static_cast<int>(static_cast<int>(GetMaxGap(size) / cellSize + 0.5) * 0.5);
    const double cell = size * itsOwner->GetDimensionBlock()->GetFactor(SDimensionBlock::Length) / cells;
    if (top > 0.0) {
      SCircuit* circuit = itsOwner->GetCircuit();
      std::vector<SEnclosure*> polygons;
      circuit->CollectPolygons(polygons, SCircuit::MetalPolygons);
      std::set<int> metalLevels;
      for (SEnclosure* polygon : polygons) metalLevels.insert(static_cast<SMetalPolygon*>(polygon)->GetLevelIndex());
      double weighted[2] = {0.0, 0.0};  // above, below
      double unweighted[2] = {0.0, 0.0};
      bool passed = false;
      for (int i = 0; i < circuit->GetNumberOfLevels(); ++i) {
        const SLevel* level = circuit->GetLevel(i);
        const double thickness = level->GetThickness();
        const double epsMu = level->GetErel() * level->GetMuRel();
        const int side = passed ? 1 : 0;
        if (passed)
          VeloraTrace(2, TRACE_GENERAL, "Level below %d, Thickness %g, EpsyRu %g", i, thickness, epsMu);
        else
          VeloraTrace(2, TRACE_GENERAL, "Level above %d, Thickness %g, EpsyRu %g", i, thickness, epsMu);
        unweighted[side] += thickness;
        weighted[side] += epsMu != 0.0 ? thickness / epsMu : 0.0;
        if (metalLevels.count(i) > 0 && !passed) {
          VeloraTrace(2, TRACE_GENERAL, "Metal Found on Level %d", i);
          passed = true;
        }
      }
      VeloraTrace(2, TRACE_GENERAL, "Sums Weighted : Unweighted %g,%g : %g,%g", weighted[0], weighted[1], unweighted[0],
                  unweighted[1]);
      for (int side = 0; side < 2; ++side) {
        weighted[side] = 1.0 / std::max(weighted[side], 1e-100);
        unweighted[side] = 1.0 / std::max(unweighted[side], 1e-100);
      }
      VeloraTrace(2, TRACE_GENERAL, "Inverted Sums Weighted : Unweighted %g,%g : %g,%g", weighted[0], weighted[1],
                  unweighted[0], unweighted[1]);
      const double eps = (weighted[0] + weighted[1]) / (unweighted[0] + unweighted[1]);
      VeloraTrace(2, TRACE_GENERAL, "Calculating Lambda with Freq,Eps %g,%g", top, eps);
      const double lambda = kSpeedOfLight / top / std::sqrt(eps);
      const int lambdaCells = static_cast<int>(0.2 * lambda / cell);
      VeloraTrace(2, TRACE_GENERAL, "Calculated 0.2 Lambda meters,cells %g,%d", 0.2 * lambda, lambdaCells);
      half = std::min(half, lambdaCells);
    }
  }
  half = std::max(half, kFewestCells);
  VeloraTrace(2, TRACE_GENERAL, "End Calculate Sugested Ref Plane. Returning %d Cells", half);
  return half;
}

#include "SEdgeVia.h"

#include "SFile.h"
#include "SFileBlock.h"
#include "SGeoClassID.h"
#include "SPolyDepHandle.h"
#include "SProjectErrorManager.h"
#include "SProjectStream.h"

SCOLLECTABLE_DEFINE(SEdgeVia, SID_EDGEVIA, &SEnclosure::staticTypeInfo())

SEdgeVia::SEdgeVia(SMetalPolygon* owner, int edge) {
  itsEdge = edge;
  if (owner != nullptr) owner->AddChild(this);
}

SMetalPolygon* SEdgeVia::GetPolygon() const { return SMetalPolygon::Of(itsOwner); }

void SEdgeVia::Write(SProjectStream& out, int format, long long ordinal) const {
  const SMetalPolygon* polygon = GetPolygon();
  const int level = polygon != nullptr ? polygon->GetLevelIndex() : 0;
  // The short line names its target by number only.
  const bool shortLine = format < 3 || (itsViaKind == OlderVia && itsToLevelType == ToLevelNumber);
  if (shortLine) {
    // Before the current line a via could only go one level down.
    if (format < 3 && !(itsToLevelType == ToLevelNumber && itsToLevel == level + 1)) return;
    out << "EVIA " << ordinal << ' ' << itsEdge << ' ' << itsToLevel << '\n';
    return;
  }
  out << "EVIA1\n";
  SPolyDepHandle handle;
  handle.SetPolygonId(polygon != nullptr ? polygon->GetId() : itsPolygonId);
  handle.AddItem(itsEdge);
  handle.Write(out);
  out << "TOLEVEL " << GetToLevelText() << '\n';
}

bool SEdgeVia::Read(SFile& file, const SString& keyword, SProjectErrorManager& errors) {
  SetLine(file.LineCount());
  const SString upper = keyword.upper();
  if (upper == "EVIA1") {
    itsViaKind = EdgeVia;
    if (!file.NextLine()) return ReadFault(errors, file, 6024);
    SPolyDepHandle handle;
    if (!handle.Read(file, errors)) return false;
    itsPolygonId = handle.GetPolygonId();
    itsEdge = handle.GetItem(0);
    SString token;
    if (!file.NextLine() || !file.GetToken(token) || !SFileBlock::Match(token, "TOLEVEL"))
      return ReadFault(errors, file, 6024);
    if (!file.GetUpperToken(token) || !SetToLevelText(token)) return ReadFault(errors, file, 6059);
    return true;
  }
  itsViaKind = upper == "EVIAI" ? OlderEdgeVia : OlderVia;
  long long ordinal = 0, edge = 0, level = 0;
  if (!file.GetLong(ordinal)) return ReadFault(errors, file, 6057);
  if (!file.GetLong(edge)) return ReadFault(errors, file, 6058);
  if (!file.GetLong(level)) return ReadFault(errors, file, 6059);
  itsOrdinal = ordinal;
  itsEdge = static_cast<int>(edge);
  SetToLevel(static_cast<int>(level));
  return true;
}

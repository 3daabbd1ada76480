#ifndef SMATERIALTYPEIO_H
#define SMATERIALTYPEIO_H

#include "SString.h"

class SCircuit;
class SFile;
class SMaterialTypeData;
class SEnclosure;
class SProjectErrorManager;
class SProjectStream;
class SReadMetal;
class SDimensionBlock;
class SValueVarDouble;

// Where the GEO block reaches the material types. Readers are called with the keyword token
// already taken from the current line; they report their own errors (message number,
// severity 3, line) and return false when the read of the block must end.
namespace SMaterialTypeIO {
// Metals "Lossless" (top and bottom cover), "WG Load", "Free Space", via "Lossless", brick
// "Air".
void CreateBuiltInTypes(SCircuit& circuit);
// MET, RES, REN: a metal or via metal type; the k-th such line read gets file number k.
// The oldest files hold nameless MET and RES lines of numbers, named by a REN line after.
bool ReadMetalLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// TMET, BMET and the older TOP, TON, BOT, BON.
bool ReadCoverLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// BRI, BRA, BRL and the older PRI, PRA, PRN; bricks have their own numbering from 0.
bool ReadBrickLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// Top and bottom metal from the names read, making types where none has the name; then
// the links of via metals (ResolveViaLinks).
bool ResolveCovers(SCircuit& circuit, SProjectErrorManager& errors);
void DeleteReadMetal(SReadMetal* data);
// TMET and BMET.
void WriteCovers(SProjectStream& out, SCircuit& circuit, int format);
// The numbering pass, then the type lines.
void NumberAndWriteTypes(SProjectStream& out, SCircuit& circuit, int format);
// The type data of an enclosure that is a metal, via or brick type, else null.
SMaterialTypeData* AsMaterialType(SEnclosure* object);
// Binds via metals to the planar metals their ARR lines name (unknown names stay as text).
void ResolveViaLinks(SCircuit& circuit);
// A conductive loss field: "INF " when infinite, else the value and a blank. Formats below
// 15 hold conductivity in S/m only, so other loss types and units are converted first
// (sheet resistance through `thickness`, a length in the file's unit). Plain numbers go
// with the stream's digits when `streamDigits`, else as a value.
void WriteConductiveLoss(SProjectStream& out, const SValueVarDouble& value, bool infinite, int lossCode,
                         const SValueVarDouble* thickness, int format, const SDimensionBlock* dim,
                         bool streamDigits);
// A length of a type as a value, in the file's length unit (older feet files hold inches).
void WriteLength(SProjectStream& out, const SValueVarDouble& value, const SDimensionBlock* dim);
}  // namespace SMaterialTypeIO

#endif

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

// Where the GEO block reaches the material types. Readers are called with the keyword token
// already taken from the current line; they report their own errors (message number,
// severity 3, line) and return false when the read of the block must end.
namespace SMaterialTypeIO {
// Metals "Lossless" (top and bottom cover), "WG Load", "Free Space", via "Lossless", brick
// "Air".
void CreateBuiltInTypes(SCircuit& circuit);
// MET, RES, REN: a metal or via metal type; the k-th such line read gets file number k.
bool ReadMetalLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// TMET, BMET and the older TOP, TON, BOT, BON.
bool ReadCoverLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// BRI, BRA, BRL and the older PRI, PRA, PRN; bricks have their own numbering from 0.
bool ReadBrickLine(SFile& file, SCircuit& circuit, const SString& keyword, SProjectErrorManager& errors);
// Top and bottom metal from the names read, making types where none has the name.
bool ResolveCovers(SCircuit& circuit, SProjectErrorManager& errors);
void DeleteReadMetal(SReadMetal* data);
// TMET and BMET.
void WriteCovers(SProjectStream& out, SCircuit& circuit, int format);
// The numbering pass, then the type lines.
void NumberAndWriteTypes(SProjectStream& out, SCircuit& circuit, int format);
// The type data of an enclosure that is a metal, via or brick type, else null.
SMaterialTypeData* AsMaterialType(SEnclosure* object);
}  // namespace SMaterialTypeIO

#endif

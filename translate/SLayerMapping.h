#ifndef SLAYERMAPPING_H
#define SLAYERMAPPING_H

// One line of a layer file: what the polygons of one outside layer become in
// the project.

#include <cstdint>

#include "SCollectable.h"
#include "SString.h"
#include "SValid.h"

class QTextStream;
class SLayerFile;
class SMetalType;
class SViaMetalType;
class SBrickType;
class STechLayer;
class SXtranProject;

enum SLayerFileClassID : ClassID {
    SID_LAYERMAPPING = 3301,
    SID_GDSLAYERMAPPING = 3302,
    SID_LAYERFILE = 3303,
    SID_GDSLAYERFILE = 3304
};

// What the polygons of a mapping are; the values are those of the file's words.
enum SLayerPurpose {
    kPurposeMetal = 0,
    kPurposeBrick = 1,
    kPurposeVia = 2,
    kPurposePort = 3,
    kPurposeSubstrate = 4,
    kPurposeHole = 5,
    kPurposeUndefined = 6
};

// What a level word names; also what the far end of a via is.
enum SLevelKind {
    kLevelNumber = 0,
    kLevelTop = 1,
    kLevelGround = 2,
    kLevelNotVia = 3,
    // The level just above ground: a via from ground written without a far end.
    kLevelAboveGround = 4
};

class SLayerMapping : public SCollectable
{
    SCOLLECTABLE_DECLARE(SLayerMapping)
    SCOLLECTABLE_COPYABLE(SLayerMapping)
public:
    SLayerMapping();
    ~SLayerMapping() override;

    virtual void SetDefaults();
    // The whole line, line end included.
    virtual void Write(QTextStream& stream) const;
    virtual void WriteStreamNumbers(QTextStream& stream) const;
    // Reads the current line of the file; on failure the file holds the message.
    virtual bool Read(SLayerFile& file);
    virtual bool ReadStreamNumbers(SLayerFile& file);
    // A mapping that is on takes the project's material of its name (any case), made
    // when the project has none: a metal, brick or via type by purpose.
    virtual void BindProject(SXtranProject& project);
    // The same, only while no technology layer is bound.
    virtual void BindProjectOnce(SXtranProject& project);
    // True when both map the same outside layer.
    virtual bool SameKey(const SLayerMapping& other) const;
    virtual void SetDefaultTechLayerName(bool addSuffix);
    // Makes the name of one of several mappings of a pair unique.
    virtual void AddTechLayerSuffix();
    virtual SString GetLayerText() const;
    virtual bool SetLayerFromText(const SString& text);
    virtual SString GetDatatypeText() const;
    virtual void SetDatatype(int datatype);
    virtual SString GetMapNameText() const { return itsMapName; }
    virtual void SetStreamNumbers(int, int) {}

    // Level setters keep itsMaxLevel up to date.
    void SetGeoNumber(int level);
    void SetToGeoNumber(int level);
    void ClearGeoNumber() { itsGeoNumber.SetInvalid(); }
    // Trailing blanks cut; an empty name becomes "Unknown".
    void SetMapName(const SString& name);
    bool IsVia() const { return itsPurpose == kPurposeVia; }

    // "metal_boundary" and so on; null for a value outside the table.
    static const char* PurposeWord(int purpose);
    // "Metal" and so on, as shown to a user.
    static const char* PurposeName(int purpose);
    // The purpose of a word of the file, without regard to case; -1 when unknown.
    static int PurposeFromWord(const SString& word);

    SIntValid itsGeoNumber;
    SIntValid itsToGeoNumber;
    int itsToLevelKind = kLevelNotVia;
    SString itsName;
    SString itsMapName;
    int itsPurpose = kPurposeMetal;
    bool itsMapped = true;
    bool itsGround = false;
    // The project's material objects, not owned; set when the project is bound.
    SMetalType* itsMetalType = nullptr;
    SViaMetalType* itsViaType = nullptr;
    SBrickType* itsBrickType = nullptr;
    uint64_t itsMaxLevel = 0;
    SString itsTechLayerName;
    STechLayer* itsTechLayer = nullptr;
    // Set for every mapping after a read: the highest level of the file plus 1.
    uint64_t itsLevelCount = 0;

protected:
    // Fails the read with "file:line: " in front of the text.
    bool Fail(SLayerFile& file, const SString& text) const;
    SString LevelText() const;
    SString ToLevelText() const;
};

#endif

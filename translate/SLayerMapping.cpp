#include "SLayerMapping.h"

#include <QTextStream>

#include "SLayerFile.h"
#include "SXtranProject.h"

SCOLLECTABLE_DEFINE(SLayerMapping, SID_LAYERMAPPING, &SCollectable::staticTypeInfo())

namespace {

struct SPurposeEntry
{
    const char* word;
    const char* name;
    char letter;
};

const SPurposeEntry kPurposes[] = {
    {"metal_boundary", "Metal", 'm'},    {"brick_boundary", "Brick", 'b'}, {"via", "Via", 'v'},
    {"wall_port", "Port", 'p'},          {"substrate", "Substrate", 'p'},  {"hole_boundary", "Subtract", 'h'},
    {"undefined_boundary", "<Any>", 'p'},
};
const int kPurposeCount = int(sizeof(kPurposes) / sizeof(kPurposes[0]));

// A level word of the file: a number, "top", or "gnd"/"ground".
struct SLevelWord
{
    int kind = kLevelNumber;
    int number = 0;
};

enum SWordResult { kWordRead, kWordMissing, kWordInvalid };

// Negative numbers are refused: a level is an index into the project's stack.
SWordResult ReadLevelWord(SLayerFile& file, SLevelWord& word)
{
    if (file.GetInt(word.number)) {
        word.kind = kLevelNumber;
        return word.number < 0 ? kWordInvalid : kWordRead;
    }
    SString text;
    if (!file.GetToken(text))
        return kWordMissing;
    if (text.compare("gnd", true) == 0 || text.compare("ground", true) == 0)
        word.kind = kLevelGround;
    else if (text.compare("top", true) == 0)
        word.kind = kLevelTop;
    else
        return kWordInvalid;
    return kWordRead;
}

// A token as written, quoted when it would not read back as one token.
SString Token(const SString& text)
{
    bool plain = !text.isEmpty();
    for (int i = 0; plain && i < text.length(); ++i) {
        QChar c = text[i];
        plain = !c.isSpace() && c != '"' && c != '#';
    }
    return plain ? text : SString("\"") + text + "\"";
}

} // namespace

SLayerMapping::SLayerMapping()
{
    SetDefaults();
}

SLayerMapping::~SLayerMapping() {}

void SLayerMapping::SetDefaults()
{
    itsGeoNumber.SetInvalid();
    itsToGeoNumber.SetInvalid();
    itsToLevelKind = kLevelNotVia;
    itsName = "Not_defined";
    itsMapName = "Unknown_metal";
    itsPurpose = kPurposeMetal;
    itsMapped = true;
    itsGround = false;
    itsMetalType = nullptr;
    itsViaType = nullptr;
    itsBrickType = nullptr;
    itsMaxLevel = 0;
    itsTechLayerName.clear();
    itsTechLayer = nullptr;
    itsLevelCount = 0;
}

const char* SLayerMapping::PurposeWord(int purpose)
{
    return purpose >= 0 && purpose < kPurposeCount ? kPurposes[purpose].word : nullptr;
}

const char* SLayerMapping::PurposeName(int purpose)
{
    return purpose >= 0 && purpose < kPurposeCount ? kPurposes[purpose].name : "";
}

int SLayerMapping::PurposeFromWord(const SString& word)
{
    if (word.compare("boundary", true) == 0)
        return kPurposeMetal;
    for (int i = 0; i < kPurposeCount; ++i) {
        if (word.compare(kPurposes[i].word, true) == 0)
            return i;
    }
    return -1;
}

void SLayerMapping::SetGeoNumber(int level)
{
    itsGeoNumber.Set(level);
    if (level > 0 && uint64_t(level) > itsMaxLevel)
        itsMaxLevel = uint64_t(level);
}

void SLayerMapping::SetToGeoNumber(int level)
{
    itsToGeoNumber.Set(level);
    if (level > 0 && uint64_t(level) > itsMaxLevel)
        itsMaxLevel = uint64_t(level);
}

void SLayerMapping::SetMapName(const SString& name)
{
    itsMapName = name.stripped(2);
    if (itsMapName.isEmpty())
        itsMapName = "Unknown";
}

bool SLayerMapping::Fail(SLayerFile& file, const SString& text) const
{
    file.SetErrorText(file.LinePrefix() + text);
    return false;
}

bool SLayerMapping::Read(SLayerFile& file)
{
    if (!file.GetToken(itsName))
        return Fail(file, "Name token read failed");

    SString word;
    if (!file.GetToken(word))
        return Fail(file, "Purpose token read failed");
    itsPurpose = PurposeFromWord(word);
    if (itsPurpose < 0) {
        itsPurpose = kPurposeMetal;
        return Fail(file, SString::format("Invalid purpose string (\"%s\")", word.data()));
    }

    if (!ReadStreamNumbers(file))
        return false;

    SLevelWord from;
    switch (ReadLevelWord(file, from)) {
    case kWordMissing:
        return Fail(file, "GeoNumber token read failed");
    case kWordInvalid:
        return Fail(file, "Invalid GeoNumber string");
    case kWordRead:
        break;
    }

    // An empty quoted name is a name all the same.
    if (!file.HasToken())
        return Fail(file, "MapName token read failed");
    file.GetToken(word);
    SetMapName(word);

    itsMapped = true;
    if (file.GetToken(word)) {
        if (word.compare("on", true) == 0)
            itsMapped = true;
        else if (word.compare("off", true) == 0)
            itsMapped = false;
        else
            return Fail(file, SString::format("Invalid mapped value (\"%s\")", word.data()));
    }

    SLevelWord to;
    SWordResult toResult = ReadLevelWord(file, to);
    if (toResult == kWordInvalid)
        return Fail(file, "Invalid ToGeoNumber string");
    bool hasTo = toResult == kWordRead;

    itsGround = false;
    itsGeoNumber.SetInvalid();
    itsToGeoNumber.SetInvalid();
    if (itsPurpose == kPurposeVia) {
        if (!hasTo) {
            if (from.kind == kLevelTop)
                return Fail(file, "Invalid GeoNumber string, value may not be TOP");
            if (from.kind == kLevelGround) {
                to.kind = kLevelAboveGround;
            } else if (from.number == 0) {
                to.kind = kLevelTop;
            } else {
                to.kind = kLevelNumber;
                to.number = from.number - 1;
            }
        } else if (from.kind == kLevelTop) {
            // A via against the top of the box may be written either way round.
            SLevelWord swap = from;
            from = to;
            to = swap;
        }
        if (from.kind == to.kind && (from.kind != kLevelNumber || from.number == to.number))
            return Fail(file, "GeoNumber is the same as the ToGeoNumber");
        if (from.kind == kLevelNumber)
            SetGeoNumber(from.number);
        else
            itsGround = true;
        if (to.kind == kLevelNumber)
            SetToGeoNumber(to.number);
        itsToLevelKind = to.kind;
    } else {
        if (!hasTo)
            to = from;
        if (from.kind != to.kind || (from.kind == kLevelNumber && from.number != to.number))
            return Fail(file, "GeoNumber is not the same as the ToGeoNumber");
        if (from.kind == kLevelTop)
            return Fail(file, "GeoNumber may not be TOP");
        if (from.kind == kLevelNumber) {
            SetGeoNumber(from.number);
            SetToGeoNumber(from.number);
        } else {
            itsGround = true;
        }
        itsToLevelKind = from.kind;
    }

    itsTechLayerName.clear();
    file.GetToken(itsTechLayerName);
    return true;
}

bool SLayerMapping::ReadStreamNumbers(SLayerFile&)
{
    return true;
}

void SLayerMapping::WriteStreamNumbers(QTextStream&) const {}

void SLayerMapping::Write(QTextStream& stream) const
{
    const char* purpose = PurposeWord(itsPurpose);
    stream << Token(itsName).qstring() << ' ' << (purpose ? purpose : "undefined_boundary") << ' ';
    WriteStreamNumbers(stream);
    SString level = itsGround ? SString("gnd") : itsGeoNumber.IsValid() ? itsGeoNumber.GetText() : SString("0");
    stream << ' ' << level.qstring() << " \"" << itsMapName.qstring() << "\" " << (itsMapped ? "on" : "off");

    SString to = level;
    if (itsPurpose == kPurposeVia) {
        if (itsToLevelKind == kLevelTop)
            to = "TOP";
        else if (itsToLevelKind == kLevelGround)
            to = "GND";
        else if (itsToLevelKind == kLevelNumber && itsToGeoNumber.IsValid())
            to = itsToGeoNumber.GetText();
        else
            to = itsGeoNumber.IsValid() ? itsGeoNumber.GetText() : SString();
    }
    // A via from ground has no far end to write; an empty quoted word keeps the
    // technology layer name in its column.
    if (!to.isEmpty())
        stream << ' ' << to.qstring();
    else if (!itsTechLayerName.isEmpty())
        stream << " \"\"";
    if (!itsTechLayerName.isEmpty())
        stream << " \"" << itsTechLayerName.qstring() << '"';
    stream << '\n';
}

bool SLayerMapping::SameKey(const SLayerMapping& other) const
{
    return GetLayerText() == other.GetLayerText() && GetDatatypeText() == other.GetDatatypeText();
}

SString SLayerMapping::GetLayerText() const
{
    return SString();
}

bool SLayerMapping::SetLayerFromText(const SString&)
{
    return false;
}

SString SLayerMapping::GetDatatypeText() const
{
    return SString();
}

void SLayerMapping::SetDatatype(int) {}

void SLayerMapping::SetDefaultTechLayerName(bool addSuffix)
{
    itsTechLayerName = SString("Stream") + GetLayerText() + ":" + GetDatatypeText();
    if (addSuffix)
        AddTechLayerSuffix();
}

SString SLayerMapping::LevelText() const
{
    if (itsGround)
        return "G";
    return itsGeoNumber.IsValid() ? itsGeoNumber.GetText() : SString("0");
}

SString SLayerMapping::ToLevelText() const
{
    switch (itsToLevelKind) {
    case kLevelTop:
        return "T";
    case kLevelGround:
        return "G";
    case kLevelAboveGround:
        return itsLevelCount > 0 ? SString::number(static_cast<long long>(itsLevelCount - 1)) : SString("0");
    default:
        return itsToGeoNumber.IsValid() ? itsToGeoNumber.GetText() : SString("0");
    }
}

void SLayerMapping::AddTechLayerSuffix()
{
    itsTechLayerName += SString("_") + LevelText();
    if (itsPurpose == kPurposeVia)
        itsTechLayerName += SString("_") + ToLevelText();
    char letter = itsPurpose >= 0 && itsPurpose < kPurposeCount ? kPurposes[itsPurpose].letter : 'p';
    itsTechLayerName += SString::format("_%c", letter);
}

void SLayerMapping::BindProject(SXtranProject& project)
{
    if (!itsMapped)
        return;
    switch (itsPurpose) {
    case kPurposeMetal: itsMetalType = project.GetMetalType(itsMapName, true); break;
    case kPurposeBrick: itsBrickType = project.GetBrickType(itsMapName); break;
    case kPurposeVia: itsViaType = project.GetViaType(itsMapName, true); break;
    default: break;
    }
}

void SLayerMapping::BindProjectOnce(SXtranProject& project)
{
    if (!itsTechLayer)
        BindProject(project);
}

#include "SGdsRec.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "SGdsDebug.h"
#include "SGdsElement.h"
#include "SGdsInput.h"
#include "SGdsStructure.h"
#include "SGdsStructureList.h"
#include "SInitializationFile.h"
#include "SVeloraError.h"

namespace {

SGdsDebug& Debug() { return GdsDebug(); }
bool Level(int above) { return GdsDebug().GetLevel() > above; }
bool Tags() { return GdsDebug().GetTags(); }
long Number(const SGdsRecord& record) { return long(record.GetRecordNumber()); }

int theNoNameCount = 0;


// The reference element open in the list, if any.
SGdsElementSref* OpenReference(SGdsStructureList& list)
{
    SGdsElement* element = list.GetOpenElement();
    return element && element->IsReference() ? static_cast<SGdsElementSref*>(element) : nullptr;
}

SGdsElementPath* OpenPath(SGdsStructureList& list)
{
    SGdsElement* element = list.GetOpenElement();
    return element && element->IsPath() ? static_cast<SGdsElementPath*>(element) : nullptr;
}

// A length scaled now, kept in stream units as well for a later unit.
void NoteLength(SGdsElementPath& path, SGdsStructureList& list, int which, int32_t raw)
{
    path.itsRawLengths[which] = raw;
    path.itsRawLengthsSet |= uint8_t(1u << which);
    list.NoteScaleUsed(SGdsRecord::GetScale());
}

} // namespace

// HEADER

const char* SGdsRecHeader::GetRelease() const
{
    switch (SGdsTypeByteInt::GetValue(0)) {
    case 0: return "Prior to 3.0";
    case 3: return "3.0";
    case 4: return "4.0";
    case 5: return "5.0";
    case 6: return "6";
    case 600: return "6.0";
    case 601: return "6.0.1";
    case 602: return "6.0.2";
    case 603: return "6.0.3";
    case 610: return "6.1.0";
    default: return "UNKNOWN";
    }
}

bool SGdsRecHeader::CheckValue()
{
    if (strcmp(GetRelease(), "UNKNOWN") == 0) {
        int version = int(SGdsTypeByteInt::GetValue(0));
        if (VerboseOutput)
            GdsVerbose("Release = %d\n", version);
        GdsWarning("Unknown release number %d - will try to convert file anyway.\n", version);
    }
    return true;
}

void SGdsRecHeader::Print()
{
    SGdsRecord::Print();
    if (ShortFormat)
        return;
    const char* release = GetRelease();
    if (strcmp(release, "UNKNOWN") == 0)
        return;
    if (Level(1))
        Debug().Print("Release = %s\n", release);
    if (VerboseOutput)
        GdsVerbose("Release = %s\n", release);
}

// BGNLIB, BGNSTR

void SGdsRecBgnlib::Print()
{
    SGdsRecord::Print();
    if (ShortFormat)
        return;
    if (Level(2)) {
        Debug().Print("Last Modified %s\n", DateText(0).data());
        Debug().Print("Last Accessed %s\n", DateText(1).data());
    }
    if (Level(1))
        Debug().Print("Structure time stamp\n");
    if (VerboseOutput)
        GdsVerbose("Gds library last modification - %s\n", DateText(0).data());
}

void SGdsRecBgnstr::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2)) {
        Debug().Print("Last Modified %s\n", DateText(0).data());
        Debug().Print("Last Accessed %s\n", DateText(1).data());
    }
}

bool SGdsRecBgnstr::Process(SGdsStructureList& list)
{
    if (list.GetOpenStructure()) {
        GdsError("GDS File format error (record = %ld): Found BGNSTR before ENDEL.\n", Number(*this));
        return false;
    }
    list.OpenStructure(GetRecordNumber());
    return true;
}

// LIBNAME

void SGdsRecLibname::Print()
{
    SGdsRecord::Print();
    if (ShortFormat)
        return;
    SString text = GetText();
    if (Level(1))
        Debug().Print("Library name: %s\n", text.data());
    if (VerboseOutput)
        GdsVerbose("Gds library name: \"%s\"\n", text.data());
}

bool SGdsRecLibname::Process(SGdsStructureList& list)
{
    list.itsLibraryName = GetText();
    return true;
}

// UNITS

void SGdsRecUnits::GetUnit(SString& name, double& value) const
{
    static const struct { const char* name; double metres; } kUnits[] = {
        {"mils", 2.54e-5}, {"feet", 0.3048}, {"inches", 0.0254}, {"uM", 1e-6},
        {"mm", 0.001},     {"cm", 0.01},     {"M", 1.0}};
    name = "units";
    value = 1.0;
    double ratio = GetMeterUnit() / GetUserUnit();
    for (const auto& unit : kUnits) {
        double c = unit.metres;
        if (c / 1000 + c > ratio && ratio > c - c / 1000) {
            name = unit.name;
            value = c;
        }
    }
}

bool SGdsRecUnits::CheckValue()
{
    // Six significant digits, so that a unit written as 0.00100000000000005
    // scales like 0.001.
    char text[64];
    snprintf(text, sizeof text, "%g", GetUserUnit());
    double scale = 1.0;
    if (sscanf(text, "%lf", &scale) != 1)
        scale = 1.0;
    SetScale(scale);
    // Such a unit collapses or mirrors every coordinate; the run goes on, but not silently.
    const double user = GetUserUnit();
    const double meters = GetMeterUnit();
    if (!(user > 0) || !(meters > 0) || !std::isfinite(user) || !std::isfinite(meters))
        GdsWarning("WARNING: UNITS record %ld gives a database unit of %g user units and %g meters; "
                   "units must be positive\n",
                   long(GetRecordNumber()), user, meters);
    return true;
}

void SGdsRecUnits::Print()
{
    SGdsRecord::Print();
    if (ShortFormat || !Level(1))
        return;
    SString name;
    double value;
    GetUnit(name, value);
    Debug().Print("Data base unit in user unit: %g\n", GetUserUnit());
    Debug().Print("Data base unit in meters: %g\n", GetMeterUnit());
    Debug().Print("Data base unit: %s, value = %g\n", name.data(), value);
}

void SGdsRecUnits::PrintTag()
{
    if (Tags())
        Debug().Print("<%s> \n", GetName());
}

bool SGdsRecUnits::Process(SGdsStructureList& list)
{
    GetUnit(list.itsUnitName, list.itsUnitValue);
    return true;
}

// ENDLIB, ENDSTR, ENDEL

void SGdsRecEndlib::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2))
        Debug().Print("End of Library\n");
}

void SGdsRecEndlib::PrintTag()
{
    if (Tags())
        Debug().Print("<%s> \n", GetName());
}

void SGdsRecEndstr::Print()
{
    SGdsRecord::Print();
    if (ShortFormat)
        return;
    int level = Debug().GetLevel();
    if (level >= 3)
        Debug().Print("End of Structure\n");
    else if (level == 2)
        Debug().Print("----------------------------------------\n");
}

void SGdsRecEndstr::PrintTag()
{
    if (Tags())
        Debug().Print("<%s> \n", GetName());
}

bool SGdsRecEndstr::Process(SGdsStructureList& list)
{
    list.RequireOpenStructure(*this);
    list.CloseStructure();
    return true;
}

void SGdsRecEndel::Print()
{
    SGdsRecord::Print();
    if (ShortFormat)
        return;
    int level = Debug().GetLevel();
    if (level >= 3)
        Debug().Print("End of Element\n");
    else if (level == 2)
        Debug().Print("-----------------------------------\n");
}

void SGdsRecEndel::PrintTag()
{
    if (Tags())
        Debug().Print("<%s> \n", GetName());
}

bool SGdsRecEndel::Process(SGdsStructureList& list)
{
    if (SGdsStructure* structure = list.GetOpenStructure())
        structure->CloseElement();
    return true;
}

// STRNAME

void SGdsRecStrname::ResetNoNameCount()
{
    theNoNameCount = 0;
}

bool SGdsRecStrname::ReadData(SGdsInput& file)
{
    if (!ReadRaw(file))
        return false;
    // The number of an unnamed structure sits behind the text, in the room
    // the record list keeps for it.
    int number = GetText().isEmpty() ? ++theNoNameCount : 0;
    memcpy(Data() + GetDataLength(), &number, sizeof number);
    return true;
}

SString SGdsRecStrname::GetStructureName() const
{
    int number;
    memcpy(&number, Data() + GetDataLength(), sizeof number);
    if (number > 0)
        return SString::format("NoName_%d", number);
    return GetText();
}

void SGdsRecStrname::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Structure name: %s\n", GetStructureName().data());
}

void SGdsRecStrname::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %s\n\n", GetName(), GetStructureName().data());
}

void SGdsRecStrname::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=\"%s\"> \n", GetName(), GetStructureName().data());
}

bool SGdsRecStrname::Process(SGdsStructureList& list)
{
    if (!list.GetOpenStructure()) {
        GdsError("GDS File format error (record = %ld): Found a STRNAME without a previous BGNSTR.\n",
                 Number(*this));
        return false;
    }
    SString name = GetStructureName();
    list.SetStructureName(name);
    if (Level(3))
        Debug().Print("Creating strucutre = %s\n", name.data());
    return true;
}

// Element records

void SGdsRecBoundary::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2))
        Debug().Print("Beginning of a %s\n", GetRecordType() == kGdsBox ? "Box" : "Boundary");
}

bool SGdsRecBoundary::Process(SGdsStructureList& list)
{
    if (Level(3))
        Debug().Print("Creating Boundary Element\n");
    return list.AddElement(list.NewElement<SGdsElementBoundary>(this), *this);
}

bool SGdsRecBox::Process(SGdsStructureList& list)
{
    if (Level(3))
        Debug().Print("Creating Box Element\n");
    return list.AddElement(list.NewElement<SGdsElementBox>(this), *this);
}

void SGdsRecPath::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2))
        Debug().Print("Beginning of a Path\n");
}

bool SGdsRecPath::Process(SGdsStructureList& list)
{
    if (Level(3))
        Debug().Print("Creating Path Element\n");
    return list.AddElement(list.NewElement<SGdsElementPath>(this), *this);
}

void SGdsRecSref::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2))
        Debug().Print("Beginning of a Sref\n");
}

bool SGdsRecSref::Process(SGdsStructureList& list)
{
    if (Level(3))
        Debug().Print("Creating Sref Element\n");
    // A reference that can't be added is dropped, and the build goes on.
    list.AddElement(list.NewElement<SGdsElementSref>(this), *this);
    return true;
}

void SGdsRecAref::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(2))
        Debug().Print("Beginning of a Aref\n");
}

bool SGdsRecAref::Process(SGdsStructureList& list)
{
    if (Level(3))
        Debug().Print("Creating Aref Element\n");
    list.AddElement(list.NewElement<SGdsElementAref>(this), *this);
    return true;
}

// LAYER, DATATYPE, BOXTYPE

void SGdsRecLayer::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Layer is %d\n", int(GetValue(0)));
}

void SGdsRecLayer::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %d\n\n", GetName(), int(GetValue(0)));
}

void SGdsRecLayer::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=%d> ", GetName(), int(GetValue(0)));
}

bool SGdsRecLayer::Process(SGdsStructureList& list)
{
    if (SGdsElement* element = list.GetOpenElement())
        element->itsLayer = int(GetValue(0));
    return true;
}

bool SGdsRecDatatype::Process(SGdsStructureList& list)
{
    if (SGdsElement* element = list.GetOpenElement())
        element->itsDatatype = GetValue();
    return true;
}

int SGdsRecBoxtype::GetValue() const
{
    return ZeroBoxType ? 0 : SGdsGenDatatype::GetValue();
}

bool SGdsRecBoxtype::Process(SGdsStructureList& list)
{
    if (SGdsElement* element = list.GetOpenElement())
        element->itsDatatype = GetValue();
    return true;
}

// WIDTH, BGNEXTN, ENDTEXTN

void SGdsTypeScaledLength::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print(LongText(), GetScaledValue());
}

void SGdsTypeScaledLength::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %g\n\n", GetName(), GetScaledValue());
}

bool SGdsRecWidth::Process(SGdsStructureList& list)
{
    if (SGdsElementPath* path = OpenPath(list)) {
        path->itsWidth = GetScaledValue();
        NoteLength(*path, list, 0, GetInt(0));
    }
    return true;
}

bool SGdsRecBgnextn::Process(SGdsStructureList& list)
{
    if (SGdsElementPath* path = OpenPath(list)) {
        path->itsBeginExtension = GetScaledValue();
        NoteLength(*path, list, 1, GetInt(0));
    }
    return true;
}

bool SGdsRecEndtextn::Process(SGdsStructureList& list)
{
    if (SGdsElementPath* path = OpenPath(list)) {
        path->itsEndExtension = GetScaledValue();
        NoteLength(*path, list, 2, GetInt(0));
    }
    return true;
}

// XY

double SGdsRecXy::GetX(int index) const
{
    if (index < 0 || index >= GetPointCount()) {
        GdsError("INTERNAL ERROR: SGdsRecXy::GetX, index = %d\n", index);
        VeloraExit(1);
    }
    return GetScale() * double(GetInt(2 * index));
}

double SGdsRecXy::GetY(int index) const
{
    if (index < 0 || index >= GetPointCount()) {
        GdsError("INTERNAL ERROR: SGdsRecXy::GetY, index = %d\n", index);
        VeloraExit(1);
    }
    return GetScale() * double(GetInt(2 * index + 1));
}

SPoint SGdsRecXy::GetPoint(int index) const
{
    return SPoint(GetX(index), GetY(index));
}

void SGdsRecXy::Print()
{
    SGdsRecord::Print();
    if (ShortFormat || !Level(2))
        return;
    int count = GetPointCount();
    for (int i = 0; i < count; ++i)
        Debug().Print("( %g, %g )\n", GetX(i), GetY(i));
}

void SGdsRecXy::PrintShort()
{
    if (!Level(0))
        return;
    int count = GetPointCount();
    for (int i = 0; i < count; ++i)
        Debug().Print("%-5s  ( %g, %g )\n", i == 0 ? "XY" : "", GetX(i), GetY(i));
    Debug().Print("\n");
}

void SGdsRecXy::NotePoints(SGdsElementSref& reference, SGdsStructureList& list) const
{
    const int count = std::min(GetDataLength() / 4, 6);
    for (int i = 0; i < count; ++i)
        reference.itsRawPoints[i] = GetInt(i);
    reference.itsRawPointsSet = true;
    list.NoteScaleUsed(GetScale());
}

bool SGdsRecXy::Process(SGdsStructureList& list)
{
    SGdsElement* element = list.GetOpenElement();
    if (!element)
        return true;
    if (element->IsReference()) {
        SGdsElementSref* reference = static_cast<SGdsElementSref*>(element);
        if (reference->GetName()[0] == 'A') {
            SGdsElementAref* array = static_cast<SGdsElementAref*>(reference);
            if (GetLength() != 28) {
                GdsError("Record: %d, Length of XY record is %ld, its should be 28\n", int(GetRecordNumber()),
                         long(GetLength()));
                return false;
            }
            array->itsTransform.itsTranslation = GetPoint(0);
            array->itsReferencePoint = GetPoint(0);
            array->itsColumnPoint = GetPoint(1);
            array->itsRowPoint = GetPoint(2);
            NotePoints(*array, list);
            return true;
        }
        if (GetLength() != 12) {
            GdsError("Record: %d, Length of XY record is %ld, its should be 12\n", int(GetRecordNumber()),
                     long(GetLength()));
            return false;
        }
        reference->itsTransform.itsTranslation = GetPoint(0);
        NotePoints(*reference, list);
        return true;
    }
    element->itsXyRecord = this;
    list.itsKeptRecord = this;
    return true;
}

// SNAME, STRANS, MAG, ANGLE, COLROW

void SGdsRecSname::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Structure reference name: %s\n", GetText().data());
}

void SGdsRecSname::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %s\n\n", GetName(), GetText().data());
}

void SGdsRecSname::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=\"%s\"> ", GetName(), GetText().data());
}

bool SGdsRecSname::Process(SGdsStructureList& list)
{
    if (SGdsElementSref* reference = OpenReference(list)) {
        reference->itsStructureName = GetText();
        if (Level(3))
            Debug().Print("Structure reference name = %s\n", reference->itsStructureName.data());
    }
    return true;
}

void SGdsRecStrans::Print()
{
    SGdsRecord::Print();
    if (ShortFormat || !Level(1))
        return;
    Debug().Print("Reflection is %s\n", BitText(IsReflection()));
    Debug().Print("Absolute magnification is %s\n", BitText(IsAbsoluteMagnification()));
    Debug().Print("Absolute angle is %s\n", BitText(IsAbsoluteAngle()));
}

bool SGdsRecStrans::Process(SGdsStructureList& list)
{
    if (SGdsElementSref* reference = OpenReference(list)) {
        reference->itsTransform.itsReflection = IsReflection();
        reference->itsTransform.itsAbsoluteMagnification = IsAbsoluteMagnification();
        reference->itsTransform.itsAbsoluteAngle = IsAbsoluteAngle();
    }
    return true;
}

void SGdsRecMag::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Magnification is %g\n", GetValue(0));
}

void SGdsRecMag::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %g\n\n", GetName(), GetValue(0));
}

void SGdsRecMag::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=%g> ", GetName(), GetValue(0));
}

bool SGdsRecMag::Process(SGdsStructureList& list)
{
    if (SGdsElementSref* reference = OpenReference(list))
        reference->itsTransform.itsMagnification = GetValue(0);
    return true;
}

void SGdsRecAngle::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Angle is %g\n", GetValue(0));
}

void SGdsRecAngle::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %g\n\n", GetName(), GetValue(0));
}

void SGdsRecAngle::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=%g> ", GetName(), GetValue(0));
}

bool SGdsRecAngle::Process(SGdsStructureList& list)
{
    if (SGdsElementSref* reference = OpenReference(list))
        reference->itsTransform.itsAngle = GetValue(0);
    return true;
}

bool SGdsRecColrow::CheckValue()
{
    if (GetColumns() < 0) {
        GdsError("Invalid number of columns (%d) in COLROW record. Record = %ld\n", GetColumns(), Number(*this));
        return false;
    }
    if (GetRows() < 0) {
        GdsError("Invalid number of rows (%d) in COLROW record. Record = %ld\n", GetRows(), Number(*this));
        return false;
    }
    return true;
}

void SGdsRecColrow::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Col = %d, Row = %d\n", GetColumns(), GetRows());
}

void SGdsRecColrow::PrintTag()
{
    if (Tags())
        Debug().Print("<%s=%d,%d> ", GetName(), GetColumns(), GetRows());
}

bool SGdsRecColrow::EndsTheRun(const SGdsStructureList& list) const
{
    const SGdsElement* element = list.GetOpenElement();
    return element && (!element->IsReference() || element->GetName()[0] != 'A');
}

bool SGdsRecColrow::Process(SGdsStructureList& list)
{
    SGdsElement* element = list.GetOpenElement();
    if (!element)
        return true;
    if (EndsTheRun(list))
        SFATAL("VL1001", "Can't Cast %s into %s", element->GetName(), "gdsreccolrow");
    SGdsElementAref* array = static_cast<SGdsElementAref*>(element);
    array->itsColumns = GetColumns();
    array->itsRows = GetRows();
    return true;
}

// PATHTYPE

int SGdsRecPathtype::DefaultPathType()
{
    static int type = 0;
    if (type == 0) {
        SInitializationFile* settings = SInitializationFile::GetGlobal();
        SString value = settings ? settings->GetValue("Gds", "DefaultPathType", "2") : SString("2");
        type = value == "0" ? 1 : 3;
    }
    return type;
}

int SGdsRecPathtype::GetPathType() const
{
    int value = int(GetValue(0));
    switch (value) {
    case 0: return 1;
    case 1: return DefaultPathType();
    case 2: return 3;
    case 4: return 4;
    default: {
        int fallback = DefaultPathType();
        GdsWarning("Pathtype is invalid in record %d, pathtype = %d, using %d instead\n", int(GetRecordNumber()), value,
                   fallback == 1 ? 0 : 2);
        return fallback;
    }
    }
}

void SGdsRecPathtype::Print()
{
    SGdsRecord::Print();
    if (!ShortFormat && Level(1))
        Debug().Print("Path type is %d\n", int(GetValue(0)));
}

void SGdsRecPathtype::PrintShort()
{
    if (Level(0))
        Debug().Print("%s - %d\n\n", GetName(), int(GetValue(0)));
}

bool SGdsRecPathtype::Process(SGdsStructureList& list)
{
    if (SGdsElementPath* path = OpenPath(list))
        path->itsPathType = GetPathType();
    return true;
}

// Skip records

const char* SGdsRecSkip::GetDescription() const
{
    switch (GetRecordType()) {
    case 20: return "Beginning of a Text Node";
    case 21: return "Beginning of a Node";
    default: return "";
    }
}

void SGdsRecSkip::Print()
{
    SGdsRecord::Print();
    if (ShortFormat || !Level(1))
        return;
    const char* description = GetDescription();
    if (*description)
        Debug().Print("%s\n", description);
    Debug().Print("Record skipped\n");
}

void SGdsRecSkip::PrintTag()
{
    if (!Tags())
        return;
    if (GetRecordType() == 56)
        Debug().Print("<ENDMASKS>\n");
    else
        SGdsRecord::PrintTag();
}

// The factory

namespace {

template <class T> SGdsRecord* Make(void* memory)
{
    static_assert(sizeof(T) == sizeof(SGdsRecord), "record data follows the common header");
    return new (memory) T;
}

bool IsDiscontinued(int type)
{
    switch (type) {
    case 24: case 29: case 30: case 36: case 37: case 39: case 40: case 41:
        return true;
    default:
        return false;
    }
}

} // namespace

SGdsRecord* CreateGdsRecord(void* memory, const SGdsRecord& header)
{
    SGdsRecord* record;
    switch (header.GetRecordType()) {
    case kGdsHeader: record = Make<SGdsRecHeader>(memory); break;
    case kGdsBgnlib: record = Make<SGdsRecBgnlib>(memory); break;
    case kGdsLibname: record = Make<SGdsRecLibname>(memory); break;
    case kGdsUnits: record = Make<SGdsRecUnits>(memory); break;
    case kGdsEndlib: record = Make<SGdsRecEndlib>(memory); break;
    case kGdsBgnstr: record = Make<SGdsRecBgnstr>(memory); break;
    case kGdsStrname: record = Make<SGdsRecStrname>(memory); break;
    case kGdsEndstr: record = Make<SGdsRecEndstr>(memory); break;
    case kGdsBoundary: record = Make<SGdsRecBoundary>(memory); break;
    case kGdsPath: record = Make<SGdsRecPath>(memory); break;
    case kGdsSref: record = Make<SGdsRecSref>(memory); break;
    case kGdsAref: record = Make<SGdsRecAref>(memory); break;
    case kGdsLayer: record = Make<SGdsRecLayer>(memory); break;
    case kGdsDatatype: record = Make<SGdsRecDatatype>(memory); break;
    case kGdsWidth: record = Make<SGdsRecWidth>(memory); break;
    case kGdsXy: record = Make<SGdsRecXy>(memory); break;
    case kGdsEndel: record = Make<SGdsRecEndel>(memory); break;
    case kGdsSname: record = Make<SGdsRecSname>(memory); break;
    case kGdsColrow: record = Make<SGdsRecColrow>(memory); break;
    case kGdsStrans: record = Make<SGdsRecStrans>(memory); break;
    case kGdsMag: record = Make<SGdsRecMag>(memory); break;
    case kGdsAngle: record = Make<SGdsRecAngle>(memory); break;
    case kGdsPathtype: record = Make<SGdsRecPathtype>(memory); break;
    case kGdsBox:
        record = ConvertBoxes ? Make<SGdsRecBox>(memory) : Make<SGdsRecSkip>(memory);
        break;
    case kGdsBoxtype: record = Make<SGdsRecBoxtype>(memory); break;
    case kGdsBgnextn: record = Make<SGdsRecBgnextn>(memory); break;
    case kGdsEndtextn: record = Make<SGdsRecEndtextn>(memory); break;
    default:
        record = IsDiscontinued(header.GetRecordType()) ? Make<SGdsRecDiscontinued>(memory)
                                                        : Make<SGdsRecSkip>(memory);
        break;
    }
    record->CopyHeader(header);
    return record;
}

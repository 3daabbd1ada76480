#include "SXtranProject.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <unistd.h>

#include <QFileInfo>

#include "SBrickPolygon.h"
#include "SBrickType.h"
#include "SCircuit.h"
#include "SControlBlock.h"
#include "SDimension.h"
#include "SDimensionBlock.h"
#include "SGeoClassID.h"
#include "SGeoObjectIO.h"
#include "SGeometryBlock.h"
#include "SHeaderBlock.h"
#include "SLevel.h"
#include "SLine.h"
#include "SMarker.h"
#include "SMetalPolygon.h"
#include "SMetalType.h"
#include "SPort.h"
#include "SQsgBlock.h"
#include "SRefPlane.h"
#include "SSMDev.h"
#include "STechLayer.h"
#include "SVariable.h"
#include "SVeloraError.h"
#include "SViaMetalType.h"
#include "SViaPolygon.h"
#include "SXtransPorts.h"

SCOLLECTABLE_DEFINE(SXtranProject, SID_XTRANPROJECT, &SProject::staticTypeInfo())

namespace {

SPolygonData* ShapeOf(SEnclosure* object)
{
    if (object->isA() == SID_BRICKPOLYGON)
        return static_cast<SBrickPolygon*>(object);
    return static_cast<SMetalPolygon*>(object);
}

bool IsShape(const SBaseEnclosure* node)
{
    const ClassID id = node->isA();
    return id == SID_METALPOLYGON || id == SID_VIAPOLYGON || id == SID_BRICKPOLYGON || id == SID_METALELEMENT;
}

bool SameName(const SString& a, const SString& b, bool ignoreCase)
{
    return a.compare(b, ignoreCase) == 0;
}

// Every shape of the circuit, level by level, groups included.
void CollectShapes(const SCircuit& circuit, std::vector<SEnclosure*>& list)
{
    circuit.CollectPolygons(list, SCircuit::AnyPolygon, true);
}

// The next fill pattern above those the types of the kind use.
template <class T> int NextPattern(const SCircuit& circuit)
{
    std::vector<T*> types;
    circuit.CollectObjects(types);
    int pattern = 0;
    for (const T* type : types)
        pattern = std::max(pattern, type->GetPattern() + 1);
    return pattern;
}

// Length units by the names the stream knows them by, and the project's own keywords.
SString LengthKeyword(const SString& name)
{
    static const char* const kNames[][2] = {{"mils", "MIL"}, {"feet", "FT"}, {"inches", "IN"}, {"uM", "UM"},
                                            {"mm", "MM"},    {"cm", "CM"},   {"M", "M"}};
    for (const auto& pair : kNames)
        if (name == pair[0])
            return pair[1];
    if (SDimensionBlock::UnitFactor(SDimensionBlock::Length, name) > 0.0)
        return name;
    return SString();
}

// Why nothing can be saved at `target`, or empty: what the user can act on, found before any
// text is made. `hadFile` tells whether a file stands there, which a failure leaves alone.
SString UnwritableReason(const SString& target, bool& hadFile)
{
    QFileInfo info(target.qstring());
    // The save replaces the file a link points to, in that file's directory.
    if (info.isSymLink())
        info = QFileInfo(info.symLinkTarget());
    hadFile = info.exists() && !info.isDir();
    if (info.isDir())
        return "it is a directory";
    const QString path = info.path();
    const SString directory = path == QLatin1String(".") ? SString("the current directory")
                                                         : SString("the directory ") + SString(path);
    const QFileInfo folder(path);
    if (!folder.exists())
        return directory + " does not exist";
    if (!folder.isDir())
        return SString(path) + " is not a directory";
    const auto refused = [](const SString& what) {
        const int error = errno;
        if (error == EACCES || error == EPERM)
            return what + " is write-protected";
        return what + " cannot be written (" + std::strerror(error) + ")";
    };
    if (hadFile && ::access(info.filePath().toUtf8().constData(), W_OK) != 0)
        return refused("the file");
    // A new file, or the temporary one that replaces the old, is made in the directory.
    if (::access(path.toUtf8().constData(), W_OK | X_OK) != 0)
        return refused(directory);
    return SString();
}

} // namespace

SXtranProject::SXtranProject() = default;

SXtranProject::~SXtranProject() = default;

void SXtranProject::InitNew()
{
    CreateBlocks();
    GetGeometryBlock()->SetDefaults();
    GetDimensionBlock()->SetDefaults();
    GetHeaderBlock()->SetDefaults();
    GetControlBlock()->SetDefaults();
    GetQsgBlock()->SetDefaults();
    itsCircuit = GetGeometryBlock()->GetCircuit();
    itsIsNew = true;
    itsNewPolygons.clear();
    SetLoaded(true);
    SetCells(32, 32);
}

bool SXtranProject::ReadProject(const SString& path)
{
    SetProjectType(SecondSolverProject);
    SetTemplateRead(true);
    SetFileName(path);
    GetGeometryBlock()->SetDropDrawing(itsDropDrawing);
    bool ok = Read(0);
    GetGeometryBlock()->SetDropDrawing(false);
    itsIsNew = false;
    itsNewPolygons.clear();
    if (!ok) {
        if (GetErrors().Count() == 0)
            GetErrors().AddError(SProjectErrorManager::Error, -1, 7041);
        GetErrors().Report();
        return false;
    }
    if (GetErrors().Count() > 0)
        GetErrors().Report();
    SGeometryBlock* geometry = GetGeometryBlock();
    if (!geometry->GetCircuit() || !geometry->IsPresent())
        geometry->SetDefaults();
    // A circuit read short (stopped at NUM) can't be written back whole.
    geometry->SetAbbreviated(false);
    itsCircuit = geometry->GetCircuit();
    itsCellsX = itsCircuit->GetNumCellsX();
    itsCellsY = itsCircuit->GetNumCellsY();
    itsBoxSize = itsCircuit->GetBoxSize();
    if (!itsDropDrawing)
        return true;
    itsCircuit->SetDropDrawing(false);
    // What the read built of the drawing (polygons that others refer to, with ports and
    // dimensions) goes the way the whole drawing goes otherwise.
    return RemoveDimensions() && RemovePolygons() && ReleaseReferencePlanes();
}

bool SXtranProject::Save(const SString& path)
{
    const SString target = path.isEmpty() ? SString(GetFileName()) : path;
    bool hadFile = false;
    const SString reason = target.isEmpty() ? SString() : UnwritableReason(target, hadFile);
    if (!reason.isEmpty()) {
        GetErrors().SetFileName(target);
        GetErrors().AddError(SProjectErrorManager::Error, -1, hadFile ? 7046 : 7048, target.data(), reason.data());
        return false;
    }
    SetWriteOrder(0);
    if (itsCircuit)
        itsCircuit->PrepareForSave();
    return SProject::Save(path);
}

void SXtranProject::SetCells(int x, int y)
{
    itsCellsX = x;
    itsCellsY = y;
    if (itsCircuit)
        itsCircuit->SetNumCells(x, y);
}

// ---- removing what a re-translation replaces

bool SXtranProject::RemovePolygons()
{
    if (!itsCircuit)
        return false;
    // Planes tied to a polygon must take their length while the polygon still exists.
    if (!ReleaseReferencePlanes())
        return false;
    for (int i = 0; i < itsCircuit->GetNumberOfLevels(); ++i) {
        SLevel* level = itsCircuit->GetLevel(i);
        std::vector<SBaseEnclosure*> doomed;
        level->TakeChildren(
            [](const SBaseEnclosure* child) { return IsShape(child) || child->isA() == SID_OBJECTENCLOSURE; }, doomed);
        for (SBaseEnclosure* child : doomed)
            delete child;
    }
    itsNewPolygons.clear();
    return true;
}

bool SXtranProject::RemoveDimensions()
{
    if (!itsCircuit)
        return false;
    const auto isDimension = [](const SBaseEnclosure* child) {
        return child->isKindOf(SDimension::staticTypeInfo());
    };
    std::vector<SBaseEnclosure*> dimensions;
    itsCircuit->TakeChildren(isDimension, dimensions);
    // The geometry variables go with the dimensions they are; their variables stay.
    std::vector<SVariable*> variables;
    itsCircuit->GetVariables(variables);
    for (SVariable* variable : variables)
        variable->TakeChildren(isDimension, dimensions);
    for (SBaseEnclosure* dimension : dimensions)
        delete dimension;
    return true;
}

bool SXtranProject::ReleaseReferencePlanes()
{
    if (!itsCircuit)
        return false;
    const SSize box = itsCircuit->GetBoxSize();
    std::vector<SRefPlane*> planes;
    itsCircuit->CollectObjects(planes);
    for (SRefPlane* plane : planes) {
        if (!plane->IsLinked())
            continue;
        double length = plane->GetLength();
        const SMetalPolygon* polygon = plane->GetLink().FindPolygon(*itsCircuit);
        if (polygon && polygon->GetNumberOfVertices() > 0) {
            int vertex = plane->GetLink().GetItem(0);
            if (vertex < 0 || vertex >= polygon->GetNumberOfVertices())
                vertex = 0;
            const SPoint& p = polygon->GetVertex(vertex);
            switch (plane->GetSide()) {
            case SBoxSide::Left: length = p.x(); break;
            case SBoxSide::Right: length = box.width() - p.x(); break;
            case SBoxSide::Top: length = p.y(); break;
            case SBoxSide::Bottom: length = box.height() - p.y(); break;
            default: break;
            }
        }
        plane->SetLength(std::max(0.0, length));
    }
    std::vector<SSMDev*> components;
    SSMDev::Collect(*itsCircuit, components);
    for (SSMDev* component : components)
        component->ReleaseLinks(*itsCircuit);
    return true;
}

// ---- adding polygons

bool SXtranProject::OpenPoints(const SPoint* points, int count, std::vector<SPoint>& out)
{
    if (count > 1 && points[count - 1] == points[0])
        --count;
    if (count < 2)
        return false;
    out.assign(points, points + count);
    return true;
}

SLevel* SXtranProject::RequireLevel(int level) const
{
    SLevel* found = FindLevel(level);
    if (!found)
        SFATAL("VL3501", "Level %d does not exist in the circuit", level);
    return found;
}

void SXtranProject::Place(SEnclosure* object, SPolygonData* shape, SLevel* level, STechLayer* techLayer,
                          int64_t fileid)
{
    const int64_t id = fileid != 0 ? fileid : itsNextFileId + 1;
    if (id > itsNextFileId)
        itsNextFileId = id;
    object->SetId(id);
    itsCircuit->NoteId(id);
    if (!itsImportTag.isEmpty())
        shape->SetUserText(itsImportTag);
    if (techLayer)
        shape->SetTechLayer(techLayer, itsFollowTechLayers);
    if (itsScaleFactor != 1.0) {
        std::vector<SPoint> points = shape->GetVertices();
        for (SPoint& p : points)
            p *= itsScaleFactor;
        shape->SetVertices(std::move(points));
    }
    level->AddChild(object);
    itsNewPolygons.push_back(object);
}

SMetalPolygon* SXtranProject::AddMetalPolygon(const SPoint* points, int count, int level, SMetalType* type,
                                              int64_t fileid, STechLayer* techLayer)
{
    std::vector<SPoint> open;
    if (!OpenPoints(points, count, open))
        return nullptr;
    SLevel* parent = RequireLevel(level);
    SMetalPolygon* polygon = new SMetalPolygon;
    polygon->SetVertices(std::move(open));
    polygon->SetType(type);
    Place(polygon, polygon, parent, techLayer, fileid);
    ++itsPolygonCount;
    return polygon;
}

SViaPolygon* SXtranProject::AddViaPolygon(const SPoint* points, int count, int from, int to, int toKind,
                                          SViaMetalType* type, int64_t fileid, STechLayer* techLayer)
{
    std::vector<SPoint> open;
    if (from < 0 || !OpenPoints(points, count, open))
        return nullptr;
    SLevel* parent = RequireLevel(from);
    SViaPolygon* via = new SViaPolygon;
    via->SetVertices(std::move(open));
    via->SetViaType(type);
    switch (toKind) {
    case 0: via->SetToLevel(to); break;
    case 1:
        via->SetToLevel(0);
        via->SetToLevelType(SViaData::ToTop);
        break;
    case 2:
        via->SetToLevel(0);
        via->SetToLevelType(SViaData::ToGround);
        break;
    case 4: via->SetToLevel(GetGroundLevel() - 1); break;
    default: via->SetToLevel(0); break;
    }
    via->SetViaFill(itsViaFill);
    via->SetCovers(itsViaPads);
    Place(via, via, parent, techLayer, fileid);
    ++itsPolygonCount;
    return via;
}

SViaPolygon* SXtranProject::AddSimpleVia(const SPoint* points, int count, int from, int to, int toKind,
                                         SViaMetalType* type, int64_t fileid, STechLayer* techLayer)
{
    if (count <= 0)
        return nullptr;
    double left = points[0].x(), right = left, low = points[0].y(), high = low;
    for (int i = 1; i < count; ++i) {
        left = std::min(left, points[i].x());
        right = std::max(right, points[i].x());
        low = std::min(low, points[i].y());
        high = std::max(high, points[i].y());
    }
    if (right == left && high == low)
        return nullptr;
    const SPoint corners[4] = {SPoint(left, low), SPoint(left, high), SPoint(right, high), SPoint(right, low)};
    return AddViaPolygon(corners, 4, from, to, toKind, type, fileid, techLayer);
}

SBrickPolygon* SXtranProject::AddBrickPolygon(const SPoint* points, int count, int level, SBrickType* type,
                                              int64_t fileid, STechLayer* techLayer)
{
    std::vector<SPoint> open;
    if (!OpenPoints(points, count, open))
        return nullptr;
    SLevel* parent = RequireLevel(level);
    SBrickPolygon* brick = new SBrickPolygon;
    brick->SetVertices(std::move(open));
    brick->SetType(type);
    Place(brick, brick, parent, techLayer, fileid);
    ++itsBrickCount;
    return brick;
}

// ---- types and layers

SMetalType* SXtranProject::FindMetalType(const SString& name, bool ignoreCase) const
{
    if (!itsCircuit)
        return nullptr;
    std::vector<SMetalType*> types;
    itsCircuit->CollectObjects(types);
    for (SMetalType* type : types)
        if (type->isA() == SID_METALTYPE && SameName(type->GetTypeName(), name, ignoreCase))
            return type;
    return nullptr;
}

SMetalType* SXtranProject::GetMetalType(const SString& name, bool ignoreCase)
{
    if (SMetalType* found = FindMetalType(name, ignoreCase))
        return found;
    SMetalType* type = new SMetalType;
    type->SetName(name);
    type->SetPattern(NextPattern<SMetalType>(*itsCircuit));
    type->SetProject(this);
    itsCircuit->AddObject(type);
    return type;
}

SViaMetalType* SXtranProject::FindViaType(const SString& name, bool ignoreCase) const
{
    if (!itsCircuit)
        return nullptr;
    std::vector<SViaMetalType*> types;
    itsCircuit->CollectObjects(types);
    for (SViaMetalType* type : types)
        if (SameName(type->GetTypeName(), name, ignoreCase))
            return type;
    return nullptr;
}

SViaMetalType* SXtranProject::GetViaType(const SString& name, bool ignoreCase)
{
    if (SViaMetalType* found = FindViaType(name, ignoreCase))
        return found;
    SViaMetalType* type = new SViaMetalType;
    // A via of a metal's name takes that metal's loss.
    if (const SMetalType* metal = FindMetalType(name, ignoreCase)) {
        type->itsRdc = metal->itsRdc;
        type->itsRrf = metal->itsRrf;
        type->itsXdc = metal->itsXdc;
        type->itsConductivity = metal->itsConductivity;
        type->itsCondIsInf = metal->itsCondIsInf;
        type->SetLossType(metal->GetLossType().GetCode());
    }
    type->SetName(name);
    type->SetPattern(NextPattern<SViaMetalType>(*itsCircuit));
    type->SetProject(this);
    itsCircuit->AddObject(type);
    return type;
}

SBrickType* SXtranProject::FindBrickType(const SString& name) const
{
    if (!itsCircuit)
        return nullptr;
    std::vector<SBrickType*> types;
    itsCircuit->CollectObjects(types);
    for (SBrickType* type : types)
        if (SameName(type->GetTypeName(), name, true))
            return type;
    return nullptr;
}

SBrickType* SXtranProject::GetBrickType(const SString& name)
{
    if (SBrickType* found = FindBrickType(name))
        return found;
    SBrickType* type = new SBrickType;
    type->SetName(name);
    type->SetPattern(NextPattern<SBrickType>(*itsCircuit));
    type->SetProject(this);
    itsCircuit->AddObject(type);
    return type;
}

STechLayer* SXtranProject::FindTechLayerByName(const SString& name) const
{
    return FindTechLayer(name, true);
}

STechLayer* SXtranProject::FindTechLayer(const SString& name, bool ignoreCase) const
{
    if (!itsCircuit || name.isEmpty())
        return nullptr;
    if (!ignoreCase)
        return itsCircuit->FindTechLayer(name);
    std::vector<STechLayer*> layers;
    itsCircuit->GetTechLayers(layers);
    for (STechLayer* layer : layers)
        if (SameName(layer->GetName(), name, true))
            return layer;
    return nullptr;
}

STechLayer* SXtranProject::CreateTechLayer(int type, const SString& name, int level, int toLevel)
{
    if (!FindLevel(level))
        return nullptr;
    return STechLayer::Create(*itsCircuit, type, name, level, toLevel, itsNextTechLayerId, itsViaFill, itsViaPads);
}

// ---- units

bool SXtranProject::SetLengthUnit(const SString& name)
{
    const SString keyword = LengthKeyword(name);
    if (keyword.isEmpty())
        return false;
    return GetDimensionBlock()->SetUnit(SDimensionBlock::Length, keyword);
}

double SXtranProject::GetLengthFactor()
{
    return GetDimensionBlock()->GetFactor(SDimensionBlock::Length);
}

// ---- modes

void SXtranProject::SetSizeMode(const SString& text)
{
    static const char* const kWords[] = {"max", "min", "normal", "test"};
    for (int mode = 0; mode < 4; ++mode)
        if (text == kWords[mode]) {
            itsSizeMode = mode;
            return;
        }
    itsSizeMode = text == "custom" ? SizeCustom : SizeNormal;
}

void SXtranProject::SetTranslationMode(const SString& text)
{
    static const struct
    {
        const char* word;
        int mode;
    } kWords[] = {{"none", MoveNone}, {"min", MoveMin}, {"normal", MoveNormal}, {"center", MoveCenter},
                  {"custom", MoveCustom}};
    itsTranslationMode = MoveNormal;
    for (const auto& entry : kWords)
        if (text == entry.word)
            itsTranslationMode = entry.mode;
}

void SXtranProject::SetCustomSize(double width, double height)
{
    itsCustomWidth = width;
    itsCustomHeight = height;
}

// ---- geometry

SLevel* SXtranProject::FindLevel(int number) const
{
    return itsCircuit ? itsCircuit->GetLevel(number) : nullptr;
}

int SXtranProject::GetGroundLevel() const
{
    return itsCircuit ? itsCircuit->GetNumberOfLevels() - 1 : -1;
}

void SXtranProject::ForEachShape(bool newOnly, void (*visit)(SPolygonData&, void*), void* data) const
{
    if (newOnly) {
        for (SEnclosure* object : itsNewPolygons)
            visit(*ShapeOf(object), data);
        return;
    }
    if (!itsCircuit)
        return;
    std::vector<SEnclosure*> shapes;
    CollectShapes(*itsCircuit, shapes);
    for (SEnclosure* shape : shapes)
        visit(*ShapeOf(shape), data);
}

void SXtranProject::NoteMerged(const std::vector<SEnclosure*>& removed, const std::vector<SEnclosure*>& added)
{
    if (!removed.empty()) {
        std::vector<SEnclosure*> gone(removed);
        std::sort(gone.begin(), gone.end());
        itsNewPolygons.erase(std::remove_if(itsNewPolygons.begin(), itsNewPolygons.end(),
                                            [&gone](SEnclosure* object) {
                                                return std::binary_search(gone.begin(), gone.end(), object);
                                            }),
                             itsNewPolygons.end());
    }
    for (SEnclosure* object : added)
        itsNewPolygons.push_back(object);
    for (SEnclosure* object : removed)
        --(object->isA() == SID_BRICKPOLYGON ? itsBrickCount : itsPolygonCount);
    for (SEnclosure* object : added)
        ++(object->isA() == SID_BRICKPOLYGON ? itsBrickCount : itsPolygonCount);
}

SRect SXtranProject::GetBoundingBox(bool newOnly) const
{
    struct Bounds
    {
        bool any = false;
        double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    } bounds;
    ForEachShape(
        newOnly,
        [](SPolygonData& shape, void* data) {
            Bounds& b = *static_cast<Bounds*>(data);
            for (const SPoint& p : shape.GetVertices()) {
                if (!b.any) {
                    b.x1 = b.x2 = p.x();
                    b.y1 = b.y2 = p.y();
                    b.any = true;
                    continue;
                }
                b.x1 = std::min(b.x1, p.x());
                b.x2 = std::max(b.x2, p.x());
                b.y1 = std::min(b.y1, p.y());
                b.y2 = std::max(b.y2, p.y());
            }
        },
        &bounds);
    return bounds.any ? SRect(bounds.x1, bounds.y1, bounds.x2, bounds.y2) : SRect();
}

void SXtranProject::Move(const SPoint& delta, bool newOnly)
{
    if (delta.x() == 0.0 && delta.y() == 0.0)
        return;
    SPoint moved = delta;
    ForEachShape(
        newOnly, [](SPolygonData& shape, void* data) { shape.MoveVertices(*static_cast<SPoint*>(data)); }, &moved);
}

void SXtranProject::Invert(bool newOnly)
{
    itsInverted = !itsInverted;
    double height = itsCircuit ? itsCircuit->GetBoxSize().height() : 0.0;
    ForEachShape(
        newOnly, [](SPolygonData& shape, void* data) { shape.FlipVertices(*static_cast<double*>(data)); }, &height);
}

SRect SXtranProject::MapRect(const SRect& rect) const
{
    const double height = itsCircuit ? itsCircuit->GetBoxSize().height() : 0.0;
    SPoint a = rect.p1() + itsDelta, b = rect.p2() + itsDelta;
    if (itsInverted) {
        a.setY(height - a.y());
        b.setY(height - b.y());
    }
    return SRect(a, b).normalized();
}

int SXtranProject::NiceCellCount(double high, double low) const
{
    double v = high > 0 ? (high / 2 < high - low ? high : high - low) : high - low;
    if (!(v > 0) || !std::isfinite(v))
        return 1;
    for (int round = 0; v < 10 && round < 400; ++round)
        v *= 10;
    for (int round = 0; v > 100 && round < 400; ++round)
        v /= 10;
    if (v > 50)
        v /= 2;
    return int(v + 0.5);
}

void SXtranProject::NiceBoxSize(double& size, int cells, double extent) const
{
    if (cells <= 0 || !(extent > 0) || !std::isfinite(extent))
        return;
    double c = extent / cells;
    double p = 1.0;
    int rounds = 0;
    for (; c < 10; c *= 10, p /= 10)
        if (++rounds > 10000)
            SFATAL("VL3502", "Cell size %g can not be scaled", extent / cells);
    for (; c > 100; c /= 10, p *= 10)
        if (++rounds > 10000)
            SFATAL("VL3502", "Cell size %g can not be scaled", extent / cells);
    auto round = [](double v) { return static_cast<double>(static_cast<long long>(v + 0.5)); };
    double r;
    if (c < 20)
        r = round(c);
    else if (c < 40)
        r = round(c / 2) * 2;
    else if (c < 50)
        r = round(c / 4) * 4;
    else if (c < 80)
        r = round(c / 5) * 5;
    else
        r = round(c / 10) * 10;
    size = p * r * cells;
}

int SXtranProject::SizeBox(bool newOnly)
{
    if (!itsCircuit)
        return 0;
    const SRect bounds = GetBoundingBox(newOnly);
    double x1 = bounds.x1(), y1 = bounds.y1(), x2 = bounds.x2(), y2 = bounds.y2();
    const SSize old = itsCircuit->GetBoxSize();
    double width = old.width(), height = old.height();
    int nx = itsCircuit->GetNumCellsX(), ny = itsCircuit->GetNumCellsY();
    // An empty circuit behaves like one as big as the box.
    if (x2 - x1 == 0)
        x2 += width;
    if (y2 - y1 == 0)
        y1 += height;
    const double dx = std::fabs(x2 - x1), dy = std::fabs(y2 - y1);

    int result = 0;
    int mode = itsSizeMode;
    if (mode == SizeRect && (itsCustomRect.width() == 0 || itsCustomRect.height() == 0)) {
        mode = SizeNormal;
        result = 1;
    }
    switch (mode) {
    case SizeMax:
    case SizeMin:
        if (mode == SizeMax) {
            width = x2 < 0 ? dx : x2;
            height = y2 < 0 ? dy : y2;
        } else {
            width = dx;
            height = dy;
        }
        nx = NiceCellCount(x2, x1);
        ny = NiceCellCount(y2, y1);
        break;
    case SizeNormal:
        if (itsIsNew) {
            NiceBoxSize(width, nx, dx * itsNormalFactor);
            NiceBoxSize(height, ny, dy * itsNormalFactor);
        }
        break;
    case SizeTest:
        width = height = 100.0;
        nx = ny = 100;
        break;
    case SizeRect:
        width = std::fabs(itsCustomRect.width());
        height = std::fabs(itsCustomRect.height());
        nx = NiceCellCount(itsCustomRect.x2(), itsCustomRect.x1());
        ny = NiceCellCount(itsCustomRect.y2(), itsCustomRect.y1());
        break;
    case SizeCustom:
        width = itsCustomWidth;
        height = itsCustomHeight;
        nx = NiceCellCount(width, 0);
        ny = NiceCellCount(height, 0);
        break;
    default: break;
    }

    SPoint delta;
    const double f = (mode == SizeNormal ? itsNormalFactor : 1.0) - 1.0;
    switch (itsTranslationMode) {
    case MoveMin: delta = SPoint(-x1, -y1); break;
    case MoveNormal: delta = SPoint(-(x1 - dx * f / 2), -(y1 - dy * f / 2)); break;
    case MoveRect: delta = SPoint(-itsCustomRect.x1(), -itsCustomRect.y1()); break;
    case MoveCustom: delta = itsCustomTranslation; break;
    case MoveCenter: delta = SPoint((width - dx) / 2 - x1, (height - dy) / 2 - y1); break;
    default: break;
    }

    if (itsMargin.valid()) {
        itsMargin.setRect(SRect(x1, y1, x2, y2));
        const double left = itsMargin.left(), right = itsMargin.right();
        const double top = itsMargin.top(), bottom = itsMargin.bottom();
        width += left + right;
        height += top + bottom;
        delta += SPoint(left, bottom);
    }

    if (itsCellSizeSet) {
        if (itsCellSize.width() > 0) {
            const int n = int(width / itsCellSize.width() + 0.5);
            if (n > 5) {
                nx = n;
                width = n * itsCellSize.width();
            }
        }
        if (itsCellSize.height() > 0) {
            const int n = int(height / itsCellSize.height() + 0.5);
            if (n > 5) {
                ny = n;
                height = n * itsCellSize.height();
            }
        }
    }

    Move(delta, newOnly);
    itsDelta = delta;
    itsCircuit->SetBoxSize(width, height);
    SetCells(nx, ny);
    itsBoxSize = SSize(width, height);
    // The origin of a new project stays in the top left corner of the box.
    if (itsIsNew && itsCircuit->GetLocalOrigin())
        itsCircuit->GetLocalOrigin()->SetPosition(SPoint(0.0, height));
    return result;
}

// ---- ports

bool SXtranProject::IsInBox(const SPoint& p) const
{
    const SSize box = itsCircuit ? itsCircuit->GetBoxSize() : SSize();
    return p.x() >= -itsTolerance && p.x() <= box.width() + itsTolerance && p.y() >= -itsTolerance &&
           p.y() <= box.height() + itsTolerance;
}

int SXtranProject::GetEdgeSide(const SMetalPolygon* polygon, int edge) const
{
    const int n = polygon->GetNumberOfVertices();
    if (edge < 0 || edge >= n)
        return SideNone;
    const SPoint& a = polygon->GetVertex(edge);
    const SPoint& b = polygon->GetVertex((edge + 1) % n);
    const SSize box = itsCircuit->GetBoxSize();
    auto near = [this](double v, double at) { return std::fabs(v - at) < itsTolerance; };
    if (near(a.x(), 0) && near(b.x(), 0))
        return SideLeft;
    if (near(a.x(), box.width()) && near(b.x(), box.width()))
        return SideRight;
    if (near(a.y(), box.height()) && near(b.y(), box.height()))
        return SideBottom;
    if (near(a.y(), 0) && near(b.y(), 0))
        return SideTop;
    return SideNone;
}

bool SXtranProject::FindEdgeInRect(const SRect& rect, int level, SMetalPolygon*& polygon, int& edge) const
{
    SLevel* found = FindLevel(level);
    if (!found)
        return false;
    const SRect r = rect.normalized();
    const double tiny = 1e-12;
    std::vector<SEnclosure*> shapes;
    std::vector<std::pair<const SBaseEnclosure*, size_t>> stack{{found, 0}};
    while (!stack.empty()) {
        auto& top = stack.back();
        if (top.second >= top.first->GetNumberOfChildren()) {
            stack.pop_back();
            continue;
        }
        SBaseEnclosure* child = top.first->GetChild(top.second++);
        if (child->isA() == SID_OBJECTENCLOSURE) {
            stack.emplace_back(child, 0);
            continue;
        }
        if (child->isA() != SID_METALPOLYGON && child->isA() != SID_VIAPOLYGON)
            continue;
        SMetalPolygon* candidate = static_cast<SMetalPolygon*>(child);
        const int n = candidate->GetNumberOfVertices();
        for (int k = 0; k < n; ++k) {
            // The closing edge first.
            const int i = (k + n - 1) % n;
            const SPoint& a = candidate->GetVertex(i);
            const SPoint& b = candidate->GetVertex((i + 1) % n);
            const double lowX = std::min(a.x(), b.x()), highX = std::max(a.x(), b.x());
            const double lowY = std::min(a.y(), b.y()), highY = std::max(a.y(), b.y());
            bool across = false;
            if (highY - lowY < tiny && highX - lowX >= tiny)
                across = a.y() >= r.y1() && a.y() <= r.y2() && lowX <= r.x1() && highX >= r.x2();
            else if (highX - lowX < tiny && highY - lowY >= tiny)
                across = a.x() >= r.x1() && a.x() <= r.x2() && lowY <= r.y1() && highY >= r.y2();
            if (!across)
                continue;
            if (IsInBox(a) && IsInBox(b)) {
                polygon = candidate;
                edge = i;
                return true;
            }
            break;
        }
    }
    return false;
}

void SXtranProject::AddPort(SMetalPolygon* polygon, int edge)
{
    if (!polygon || edge < 0 || edge >= polygon->GetNumberOfVertices())
        return;
    if (SGeoObjectIO::FindPortAtVertex(*polygon, edge))
        return;
    SPort* port = new SPort(polygon, edge);
    port->SetType(SPortData::Standard);
    port->SetNumber(1);
}

bool SXtranProject::ExtendToWall(SMetalPolygon* polygon, int edge, SMetalPolygon*& newPolygon, int& newEdge,
                                 int64_t fileid)
{
    newPolygon = nullptr;
    const int n = polygon ? polygon->GetNumberOfVertices() : 0;
    if (n < 3 || edge < 0 || edge >= n)
        return false;
    SPoint a = polygon->GetVertex(edge);
    SPoint b = polygon->GetVertex((edge + 1) % n);
    const SLine line(a, b);
    const bool vertical = line.itsVertical;
    const bool horizontal = !vertical && std::fabs(line.itsSlope) < line.itsTolerance;
    if (!vertical && !horizontal)
        return false;
    auto onLine = [&](const SPoint& p) {
        return vertical ? std::fabs(p.x() - a.x()) < line.itsTolerance : std::fabs(p.y() - a.y()) < line.itsTolerance;
    };
    int back = (edge + n - 1) % n, steps = 0;
    while (onLine(polygon->GetVertex(back))) {
        a = polygon->GetVertex(back);
        back = (back + n - 1) % n;
        if (++steps >= n)
            return false;
    }
    const SPoint c = polygon->GetVertex(back);
    int forward = (edge + 2) % n;
    while (onLine(polygon->GetVertex(forward))) {
        b = polygon->GetVertex(forward);
        forward = (forward + 1) % n;
        if (++steps >= n)
            return false;
    }
    const SPoint d = polygon->GetVertex(forward);

    const SSize box = itsCircuit->GetBoxSize();
    int side;
    double length;
    SPoint wallA, wallB;
    if (vertical) {
        if (c.x() > a.x() && d.x() > a.x() && a.x() > 0 && b.x() > 0) {
            side = SBoxSide::Left;
            length = a.x();
            wallA = SPoint(0, a.y());
            wallB = SPoint(0, b.y());
        } else if (a.x() > c.x() && a.x() > d.x() && a.x() < box.width() && b.x() < box.width()) {
            side = SBoxSide::Right;
            length = box.width() - a.x();
            wallA = SPoint(box.width(), a.y());
            wallB = SPoint(box.width(), b.y());
        } else {
            return false;
        }
    } else {
        if (a.y() > c.y() && a.y() > d.y() && a.y() < box.height() && b.y() < box.height()) {
            side = SBoxSide::Bottom;
            length = box.height() - a.y();
            wallA = SPoint(a.x(), box.height());
            wallB = SPoint(b.x(), box.height());
        } else if (c.y() > a.y() && d.y() > a.y() && a.y() > 0 && b.y() > 0) {
            side = SBoxSide::Top;
            length = a.y();
            wallA = SPoint(a.x(), 0);
            wallB = SPoint(b.x(), 0);
        } else {
            return false;
        }
    }

    SMetalType* type = polygon->isA() == SID_METALPOLYGON ? polygon->GetType() : nullptr;
    if (!type)
        type = itsCircuit->GetLosslessMetal();
    const SPoint points[4] = {a, b, wallB, wallA};
    newPolygon = AddMetalPolygon(points, 4, polygon->GetLevelIndex(), type, fileid, nullptr);
    if (!newPolygon)
        return false;
    newEdge = 2;
    SRefPlane* plane = itsCircuit->GetRefPlane(side);
    if (!plane) {
        SGeoObjectIO::CreateBoxRefPlanes(*itsCircuit);
        plane = itsCircuit->GetRefPlane(side);
    }
    if (plane && plane->IsEmpty())
        plane->SetLength(length);
    return true;
}

void SXtranProject::RenumberPorts(bool)
{
    if (!itsCircuit)
        return;
    std::vector<SPort*> ports;
    SGeoObjectIO::GetAllPorts(*itsCircuit, ports);
    SXtransPorts order;
    for (SPort* port : ports) {
        if (port->GetNumber() <= 0)
            continue;
        const SMetalPolygon* polygon = port->GetPolygon();
        order.Add(port, port->GetType(), polygon ? GetEdgeSide(polygon, port->GetEdge()) : SideNone,
                  polygon ? polygon->GetLevelIndex() : 0, port->GetPosition());
    }
    order.Sort();
    for (size_t i = 0; i < order.Count(); ++i)
        order.At(i)->SetNumber(int(i + 1));
}

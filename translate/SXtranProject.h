#ifndef SXTRANPROJECT_H
#define SXTRANPROJECT_H

#include <cstdint>
#include <vector>

#include "SMargin.h"
#include "SPoint.h"
#include "SProject.h"
#include "SRect.h"
#include "SSize.h"

class SBrickPolygon;
class SBrickType;
class SCircuit;
class SEnclosure;
class SLevel;
class SMetalPolygon;
class SMetalType;
class SPolygonData;
class SPort;
class STechLayer;
class SViaMetalType;
class SViaPolygon;

enum SXtranClassID : ClassID { SID_POLYGONEDGE = 3153, SID_XTRANPROJECT = 3160 };

// A project with what a translator does to it: polygons added in stream-oriented
// coordinates, then the box sized round them, the drawing moved and flipped into the
// box, and ports put on the walls. Lengths are project units throughout.
class SXtranProject : public SProject
{
    SCOLLECTABLE_DECLARE(SXtranProject)

public:
    enum SizeMode { SizeMax = 0, SizeMin = 1, SizeNormal = 2, SizeTest = 3, SizeRect = 4, SizeCustom = 5 };
    enum TranslationMode {
        MoveNone = 0,
        MoveMin = 1,
        MoveNormal = 2,
        MoveRect = 3,
        MoveCustom = 4,
        MoveCenter = 5
    };
    // What GetEdgeSide answers: the box sides, and 4 for an edge on no wall.
    enum EdgeSide { SideLeft = 0, SideRight = 1, SideTop = 2, SideBottom = 3, SideNone = 4 };

    SXtranProject();
    ~SXtranProject() override;

    // The blocks a new translation needs, with their defaults, and 32 by 32 cells.
    virtual void InitNew();
    // Everything drawn goes; planes tied to a polygon keep the length they have.
    virtual bool RemovePolygons();
    virtual bool RemoveDimensions();
    virtual bool ReleaseReferencePlanes();
    // Reads a project in the translator's mode: the file serves as a template only.
    virtual bool ReadProject(const SString& path);
    // Checks that the target can be written, then writes through a temporary file, so a
    // failure leaves an existing file as it was. False, with the reason among the errors,
    // when nothing was saved.
    virtual bool Save(const SString& path);
    // For -g and -i: ReadProject drops the drawing as it reads (polygons that nothing refers
    // to are never built) and leaves the project as RemoveDimensions, RemovePolygons and
    // ReleaseReferencePlanes leave it. The project written in the end is the same.
    void SetDropDrawing(bool on) { itsDropDrawing = on; }

    // Sizes the box round the polygons (only this run's with `newOnly`) and moves them
    // into it. 1 when a given rectangle was unusable and the normal size was taken.
    virtual int SizeBox(bool newOnly);

    // The adds take points in project units; a closing point equal to the first is
    // dropped. Null, and nothing added, for fewer than two points. A fileid of 0 takes
    // the next of the project's own count.
    virtual SMetalPolygon* AddMetalPolygon(const SPoint* points, int count, int level, SMetalType* type,
                                           int64_t fileid, STechLayer* techLayer);
    virtual SViaPolygon* AddViaPolygon(const SPoint* points, int count, int from, int to, int toKind,
                                       SViaMetalType* type, int64_t fileid, STechLayer* techLayer);
    // The via as its bounding rectangle.
    virtual SViaPolygon* AddSimpleVia(const SPoint* points, int count, int from, int to, int toKind,
                                      SViaMetalType* type, int64_t fileid, STechLayer* techLayer);
    virtual SBrickPolygon* AddBrickPolygon(const SPoint* points, int count, int level, SBrickType* type,
                                           int64_t fileid, STechLayer* techLayer);

    // Gives all ports with a positive number the numbers 1, 2, ... in wall order.
    virtual void RenumberPorts(bool circuitOnly);

    // Get finds or makes, Find only finds.
    virtual SMetalType* GetMetalType(const SString& name, bool ignoreCase);
    virtual SMetalType* FindMetalType(const SString& name, bool ignoreCase) const;
    virtual SViaMetalType* GetViaType(const SString& name, bool ignoreCase);
    virtual SViaMetalType* FindViaType(const SString& name, bool ignoreCase) const;
    virtual SBrickType* GetBrickType(const SString& name);
    virtual SBrickType* FindBrickType(const SString& name) const;
    virtual STechLayer* FindTechLayerByName(const SString& name) const;

    // The union of the polygons' boxes; the all-zero rectangle without polygons.
    virtual SRect GetBoundingBox(bool newOnly) const;
    virtual void Move(const SPoint& delta, bool newOnly);
    // Toggles the flip and replaces y by the box height minus y.
    virtual void Invert(bool newOnly);
    // A stream unit name ("uM", "mils", ...) or a project keyword ("UM", "MIL", ...);
    // an unknown name changes nothing and answers false.
    virtual bool SetLengthUnit(const SString& name);
    // Metres per project length unit.
    virtual double GetLengthFactor();
    virtual void SetSizeMode(int mode) { itsSizeMode = mode; }
    // "max", "min", "normal", "test", "custom"; anything else is normal.
    virtual void SetSizeMode(const SString& text);
    virtual void SetCustomSize(double width, double height);
    virtual void SetTranslationMode(int mode) { itsTranslationMode = mode; }
    // "none", "min", "normal", "center", "custom"; anything else is normal.
    virtual void SetTranslationMode(const SString& text);
    virtual void SetMargin(const SMargin& margin) { itsMargin = margin; }
    virtual SLevel* FindLevel(int number) const;
    // Rounds the cell size of `extent` over `cells` to a convenient value; `size` is the
    // box that gives.
    virtual void NiceBoxSize(double& size, int cells, double extent) const;
    virtual int NiceCellCount(double high, double low) const;

    void SetCells(int x, int y);
    void SetCustomTranslation(double x, double y) { itsCustomTranslation = SPoint(x, y); }
    void SetCustomRect(const SRect& rect) { itsCustomRect = rect; }
    // A rectangle of stream-oriented coordinates as it lies in the finished project.
    SRect MapRect(const SRect& rect) const;
    int GetGroundLevel() const;
    // Makes a technology layer on the level with the project's via defaults; null when the
    // level doesn't exist.
    STechLayer* CreateTechLayer(int type, const SString& name, int level, int toLevel);
    STechLayer* FindTechLayer(const SString& name, bool ignoreCase) const;

    // Ports on the walls. The edge is the index of its first vertex.
    void AddPort(SMetalPolygon* polygon, int edge);
    // A metal polygon from a straight run of the polygon's outline through the edge to
    // the nearest wall that the polygon faces, and a reference plane of that length when
    // the side has none. False when no wall is reachable.
    bool ExtendToWall(SMetalPolygon* polygon, int edge, SMetalPolygon*& newPolygon, int& newEdge, int64_t fileid);
    // The first axis-aligned edge of a polygon on the level that runs across the whole
    // rectangle and lies in the box.
    bool FindEdgeInRect(const SRect& rect, int level, SMetalPolygon*& polygon, int& edge) const;
    int GetEdgeSide(const SMetalPolygon* polygon, int edge) const;
    bool IsInBox(const SPoint& point) const;

    SCircuit* GetCircuit() const { return itsCircuit; }
    bool IsNew() const { return itsIsNew; }
    int GetSizeMode() const { return itsSizeMode; }
    int GetTranslationMode() const { return itsTranslationMode; }
    const SPoint& GetDelta() const { return itsDelta; }
    bool IsInverted() const { return itsInverted; }
    // The polygons this run added, in order.
    size_t GetNewPolygonCount() const { return itsNewPolygons.size(); }
    // Room for that many more, so that the list doesn't grow by copying itself.
    void ReserveNewPolygons(size_t count) { itsNewPolygons.reserve(itsNewPolygons.size() + count); }
    // Polygons that a merge replaced leave the list of new ones, and what it made joins it.
    void NoteMerged(const std::vector<SEnclosure*>& removed, const std::vector<SEnclosure*>& added);

    int64_t itsNextFileId = 0;
    int itsPolygonCount = 0;
    int itsBrickCount = 0;
    double itsTolerance = 1e-9;
    double itsNormalFactor = 1.5;
    bool itsCellSizeSet = false;
    SSize itsCellSize;
    double itsScaleFactor = 1.0;
    bool itsViaPads = false;
    int itsViaFill = 1;
    SString itsImportTag;
    int itsNextTechLayerId = 1;
    // -U: polygons placed on a technology layer follow it.
    bool itsFollowTechLayers = false;
    // -r: vias become their bounding rectangles.
    bool itsSimpleVias = false;

private:
    // Copies the points without a closing repeat; false for fewer than two.
    static bool OpenPoints(const SPoint* points, int count, std::vector<SPoint>& out);
    // The level for a new polygon; fatal when it is missing.
    SLevel* RequireLevel(int level) const;
    void Place(SEnclosure* object, SPolygonData* shape, SLevel* level, STechLayer* techLayer, int64_t fileid);
    void ForEachShape(bool newOnly, void (*visit)(SPolygonData&, void*), void* data) const;

    SCircuit* itsCircuit = nullptr;
    bool itsIsNew = true;
    bool itsDropDrawing = false;
    int itsCellsX = 32;
    int itsCellsY = 32;
    SSize itsBoxSize;
    int itsSizeMode = SizeNormal;
    int itsTranslationMode = MoveNormal;
    SRect itsCustomRect;
    SPoint itsCustomTranslation;
    double itsCustomWidth = 0.0;
    double itsCustomHeight = 0.0;
    SPoint itsDelta;
    bool itsInverted = false;
    SMargin itsMargin;
    // The shape of each is found again when visited: a pointer less for each of millions.
    std::vector<SEnclosure*> itsNewPolygons;
};

#endif

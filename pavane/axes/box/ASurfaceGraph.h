#pragma once

#include "pavane/axes/maps/ALevelsColorGraph.h"

#include <memory>
#include <span>
#include <vector>

namespace pavane
{

struct SurfaceLinesSeen;

/// How a surface is drawn.
enum SurfaceStyle : int {
    surfaceLinesX = 1,    ///< lattice lines along x, one for a row or for several
    surfaceLinesY = 2,    ///< the same along y
    surfaceColors = 4,    ///< each cell in the colour of its value
    surfaceLight = 8,     ///< brighter where light falls; not in bitmap mode
    surfaceSkirt = 16,    ///< a curtain from the border down to the floor
    surfaceContours = 32  ///< contours at their heights
};

/// What lies on the floor below a surface.
enum SurfaceFloor : int { floorColors = 1, floorContours = 2 };

/// A map as a surface in a box: the value of a cell is the height above its centre, blank cells are
/// holes. Heights and colours go through the scale of the graph (linear at first), contours are
/// those of `contours()`. A single row or column is a line, a single cell a stalk. In a plane plot
/// it is the colour map with its contours.
///
/// A box draws two surfaces; further ones are not drawn.
class PAVANE_API ASurfaceGraph : public ALevelsColorGraph
{
public:
    ASurfaceGraph(ABAxis* axis, const AMatrixAccess& cells, const TMinMax& centres, int asItem);
    ASurfaceGraph(const ASurfaceGraph&) = delete;
    ASurfaceGraph& operator=(const ASurfaceGraph&) = delete;
    ~ASurfaceGraph() override;

    /// SurfaceStyle bits; colours and light at first.
    void SetStyle(int bits) { style_ = bits; }
    int GetStyle() const { return style_; }
    /// SurfaceFloor bits; none at first.
    void SetFloor(int bits) { floor_ = bits; }
    int GetFloor() const { return floor_; }
    /// Another map of the same size gives the colours, on a range and scale of its own; null: the
    /// map itself. Not owned. Non-zero on success; 0 for one of another size.
    int SetColorMap(const AMatrixAccess* cells);
    void followModule() override;
    void setPaletteColors(const SharedPalette& palette) override;
    /// What gives the colours: itself, or the graph of the colour map, which is not in the axis.
    AColorsGraph& ColorGraph() { return colors_ ? *colors_ : static_cast<AColorsGraph&>(*this); }
    const AColorsGraph& ColorGraph() const
    {
        return colors_ ? *colors_ : static_cast<const AColorsGraph&>(*this);
    }
    /// Least distance of two lattice lines on the floor in pixels of 96 per inch; 4 at first.
    void SetLatticeSpacing(double pixels);
    double GetLatticeSpacing() const { return spacing_; }
    void SetLatticeColor(COLORREF color);
    COLORREF GetLatticeColor() const { return latticeColor_; }
    /// Outlines drawn over the surface, each in columns and rows (MP) with fractions, closed: areas
    /// that were marked on the map.
    void SetAreaOutlines(std::vector<std::vector<CPointF>> outlines, COLORREF color);
    /// The scale of heights for a range of Z; an equalized one knows the cells.
    MapScale heightScale(const TMnMx& range) const;
    /// Counts changes of the cells.
    int cellsVersion() const { return version_; }
    /// Counts changes of lattice, outlines and colour map.
    int looks() const { return looks_; }

    int isColors() const override { return (style_ & surfaceColors) != 0; }
    void cellsChanged() override;
    void draw3D(CDC& dc, A2_3DAxis& axis) override;
    int isIn3D() const override { return 1; }

private:
    std::vector<CPointF> onGrid(const A2_3DAxis& axis, std::span<const CPointF> points,
                                double pixel) const;
    int traceContours(const std::vector<double>& values) const;
    void findContours(A2_3DAxis& axis, double pixel) const;
    void drawLine(CDC& dc, A2_3DAxis& axis) const;
    void drawLattice(CDC& dc, A2_3DAxis& axis) const;
    void drawContours(CDC& dc, A2_3DAxis& axis) const;
    void drawOutlines(CDC& dc, A2_3DAxis& axis) const;

    int style_ = surfaceColors | surfaceLight;
    int floor_ = 0;
    double spacing_ = 4;
    COLORREF latticeColor_ = RGB(0, 0, 0);
    std::unique_ptr<AColorsGraph> colors_;
    std::vector<std::vector<CPointF>> outlines_;
    COLORREF outlineColor_ = RGB(0, 0, 0);
    int version_ = 0;
    int looks_ = 0;
    std::unique_ptr<SurfaceLinesSeen> seen_;  ///< looking for it takes most of a drawing
    mutable ContourLines lines_;
    mutable int tracedVersion_ = -1;
    mutable std::vector<double> tracedLevels_;
};

}  // namespace pavane

#pragma once

#include "pavane/axes/maps/MapFrame.h"
#include "pavane/measures/areas/AreaMeasures.h"
#include "pavane/trackers/shapes/area_label.h"
#include "pavane/trackers/shapes/ShapeValues.h"
#include "platform/api.h"
#include "platform/types.h"
#include "tessel/map_header.h"
#include "tessel/SkyCoordinates.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// One area in one plane, as a row of a table.
struct AreaRow {
    int area = -1;   ///< from 0; -1: all of them
    int plane = -1;  ///< from 0; -1: of a map without planes
    AreaLabel label;
    std::string kind;  ///< "ellipse"
    int isNeverClean = 0;
    CellNumbers numbers;
    double noise = CellNumbers::none;  ///< of a cell of the plane
};

/// "rectangle", "turned rectangle", "ellipse", "polygon".
PAVANE_API const char* areaKindName(ShapeValues::Kind kind);

/// The numbers of areas as a table: a row an area, the last one of a plane for all of them. Cells
/// are told as pixels, which count from 1. Rows and columns count from 0.
class PAVANE_API AreaTable
{
public:
    AreaTable() : sky_(std::make_unique<SkyCoordinates>()) {}

    /// The map that the numbers are of: its units and where it lies on the sky. Drops the rows.
    void setMap(const MapHeader& header, const MapFrame& frame);
    const FluxScale& scale() const { return scale_; }
    std::vector<AreaRow>& rows() { return rows_; }
    const std::vector<AreaRow>& rows() const { return rows_; }
    /// Appends the rows of all areas of one plane and the one of all. `describe` fills label and
    /// kind of the row of an area.
    void add(const AreaMeasures& measures, int plane,
             const std::function<void(int area, AreaRow& row)>& describe);

    int columns() const { return static_cast<int>(columns_.size()); }
    CString title(int column) const;
    /// What the title stands for, in a line.
    CString tip(int column) const;
    /// Width that its texts need, in characters.
    int width(int column) const;
    int isText(int column) const;
    /// Whether it is the column of names, which a window may let edit.
    int isName(int column) const { return field(column) == Field::name; }
    /// "" for what does not exist. All digits that are known, or those that a column of the window
    /// has room for.
    CString text(int row, int column) const { return text(row, column, sumDigits); }
    CString shortText(int row, int column) const { return text(row, column, shortDigits); }
    /// What a cell stands for; 0 for words and for what does not exist.
    int number(int row, int column, double& value) const;

    /// Titles, then the rows in the order given (all as they are without one), cells separated by
    /// tabs. 0 at a failed write.
    int writeTsv(std::ostream& stream, const std::vector<int>* order = nullptr) const;

private:
    enum class Field {
        plane,
        name,
        kind,
        cells,
        blank,
        sum,
        flux,
        error,
        beams,
        mean,
        median,
        rms,
        least,
        leastX,
        leastY,
        greatest,
        greatestX,
        greatestY,
        greatestEast,
        greatestNorth,
        centroidX,
        centroidY,
        centroidEast,
        centroidNorth,
        longitude,
        latitude
    };
    static constexpr int sumDigits = 12;
    static constexpr int shortDigits = 6;
    struct Look;
    static const Look& lookOf(Field field);
    Field field(int column) const { return columns_[static_cast<std::size_t>(column)]; }
    void chooseColumns();
    double value(const AreaRow& row, Field field) const;
    CString text(int row, int column, int mostDigits) const;
    CString skyText(double degrees, int isLongitude) const;
    int isOfDegrees() const;
    int hasPlanes() const;

    MapFrame frame_;
    FluxScale scale_;
    std::unique_ptr<SkyCoordinates> sky_;
    std::vector<Field> columns_;
    std::vector<AreaRow> rows_;
};

}  // namespace pavane

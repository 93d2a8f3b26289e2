#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "platform/geometry.h"

#include <functional>
#include <memory>
#include <vector>

namespace pavane
{

class CDC;
class MapPicture;

/// Channel maps: planes of a cube side by side, row by row, on as many pages as they need. All have
/// one colour range, which one bar explains, and the contours of all are those of one peak and one
/// noise. Needs no window.
class PAVANE_API ChannelMaps
{
public:
    /// Called for each map before it is drawn: levels, scale, palette, layers.
    using Prepare = std::function<void(MapPicture& picture, int plane)>;

    ChannelMaps();
    ChannelMaps(const ChannelMaps&) = delete;
    ChannelMaps& operator=(const ChannelMaps&) = delete;
    ~ChannelMaps();

    /// Looks at planes, counted from 0, in the order given. Non-zero on success; else 0, `error` is
    /// a line without the file's name, and nothing is shown. Large cubes are read again to be
    /// drawn.
    int open(const CString& fitsFile, const std::vector<int>& planes, CString& error,
             const ProgressFunction& progress = {});
    int count() const { return static_cast<int>(planes_.size()); }
    /// Of the first plane.
    const MapHeader& header() const { return header_; }

    /// The colours of all planes: from the least to the greatest of their cells, unless it is set;
    /// a range of which the first is not below the second sets it back.
    void setRange(const TMnMx& range) { asked_ = range; }
    TMnMx range() const;
    /// Equalised scales, which would be another for each plane, become linear ones.
    void setPrepare(const Prepare& prepare) { prepare_ = prepare; }
    /// Maps of a page; each at least 1, at most 100. 1 x 1 at first.
    void setGrid(int rows, int columns);
    /// At least 1.
    int pages() const;
    /// Draws page `page`, from 1, into `rect` of any context. 0 when a plane could not be read any
    /// more: its place stays empty.
    int draw(CDC& dc, const CRect& rect, int page);

private:
    struct Plane {
        int number = 0;
        MapRange range;
        std::unique_ptr<MapContent> content;  ///< null: read when it is drawn
    };
    struct Shown;
    int show(const Plane& plane, Shown& shown) const;
    struct Panels;
    void placePanels(CDC& dc, CSize room, Shown& like, Panels& panels) const;

    CString file_;
    MapHeader header_;
    std::vector<Plane> planes_;
    MapRange range_;  ///< of all
    MapNoise noise_;
    TMnMx asked_;
    Prepare prepare_;
    int rows_ = 1, columns_ = 1;
};

}  // namespace pavane

#pragma once

#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapFigure.h"
#include "platform/geometry.h"

#include <memory>

namespace pavane
{

class A2DAxis;
class AAxisColorOP;
class ALevelsColorGraph;
class ARgbLegend;
class RgbImage;

/// A map as a host shows it: its axes on the sky, its colours and contours, the bar and the figure
/// of them all. Neither copied nor moved: graphs and bars point into it.
class PAVANE_API MapPicture
{
public:
    MapPicture();
    MapPicture(const MapPicture&) = delete;
    MapPicture& operator=(const MapPicture&) = delete;
    ~MapPicture();

    /// Reads a map; a cube needs its plane, counted from 0. Non-zero on success; else 0, `error` is
    /// one line that names the file, and what was shown before stays.
    int open(const CString& fitsFile, CString& error, int plane = -1);
    /// Shows a map that was read, which has to outlive the picture.
    void show(const MapContent& content);
    /// The same with cells that a host has, which have to outlive it too (see describeCells).
    void show(const MapContent& content, const AMatrixAccess& cells);
    /// The content that is shown has other cells now, of the same size and place: another plane.
    void contentChanged();

    /// Shows three maps, of the cells of the content, as red, green and blue, without a bar and
    /// with a legend; the content's values stay those of contours and areas. Null: its own colours.
    void setRgb(const std::shared_ptr<RgbImage>& image);
    /// Null without one.
    const std::shared_ptr<RgbImage>& rgb() const;

    /// Of a map that is open; so are those below.
    const MapContent& content() const { return *content_; }
    A2DAxis& axis() { return *axis_; }
    ALevelsColorGraph& graph() { return *graph_; }
    /// The bar of the content's colours, which a picture of three maps does not show.
    AAxisColorOP& bar() { return *bar_; }
    MapFigure& figure() { return figure_; }
    /// The usual header line, with `note` in it, before the position. A header that someone
    /// gave the graph stays.
    void setHeaderNote(const CString& note);

    /// Draws the figure into `rect` of any context.
    void draw(CDC& dc, const CRect& rect);

private:
    std::unique_ptr<MapContent> own_;
    const MapContent* content_ = nullptr;
    MapBeam beam_;  ///< of the content, as the graph was given it
    std::unique_ptr<AMatrixAccess> ownCells_;
    std::unique_ptr<A2DAxis> axis_;
    ALevelsColorGraph* graph_ = nullptr;  // the axis's
    ARgbLegend* legend_ = nullptr;        // so is it
    std::unique_ptr<AAxisColorOP> bar_;
    MapFigure figure_;
};

}  // namespace pavane

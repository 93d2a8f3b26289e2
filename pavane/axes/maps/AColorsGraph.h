#pragma once

#include "pavane/axes/maps/ABMapGraph.h"
#include "pavane/axes/maps/AxisPalette.h"
#include "pavane/axes/maps/cells/KeptPixels.h"
#include "pavane/axes/maps/cells/MapRanks.h"
#include "pavane/axes/maps/RgbImage.h"
#include "pavane/containers/AArray.h"
#include "pavane/images/AColorPlay.h"
#include "platform/types.h"

#include <memory>

namespace pavane
{

/// A colour map. Each pixel shows the cell whose area it lies in; where several cells share a pixel
/// the greatest shows, or their mean.
///
/// Into a raster it writes palette indices 0 to 225, into a context an image in the colours of the
/// module's palette or in its own; on a page one image with a pixel for each cell.
class PAVANE_API AColorsGraph : public ABMapGraph
{
public:
    using ABMapGraph::ABMapGraph;

    void setScale(MapScaleKind kind);
    /// The scale for the values to draw (zRange); an equalized one knows the cells. A logarithmic
    /// scale whose range does not start above 0 starts at the noise of the map.
    const MapScale& scale() const;
    MapScaleKind scaleKind() const { return kind_; }
    void setSharedPixel(SharedPixel shared);
    /// Own colours for contexts, copied: as many as there are, at most 226, are spread evenly over
    /// the map colours. None: the module's palette. In bitmap mode they show once the colours were
    /// played with.
    void setColors(const AArray<COLORREF>& colors);
    const AArray<COLORREF>& colors() const { return colors_; }
    /// Palette index of blank cells in a raster, and their colour in a context.
    void setBlank(int index, COLORREF color);
    /// Colour `index` of getNColors(), as a context shows it.
    COLORREF mapColor(int index) const;
    /// Plays with the colours of this map, of contexts and of its raster; other maps stay. The
    /// axis gets a palette of its own for that at the first play in bitmap mode. Draws nothing.
    /// Non-zero on success; 0 when the values are none.
    int SetColorPlay(const AColorPlay& play);
    const AColorPlay& GetColorPlay() const { return play_; }
    /// Non-zero while a drag plays: contours keep the colours that stood out before it.
    void setPlayGoing(int on);
    /// Colour `index` as contours choose theirs by it.
    COLORREF contourGround(int index) const;

    /// Shows three maps of the same cells as red, green and blue in place of its own colours, on
    /// the graph's kind of scale; null: its own. A raster keeps its own colours.
    void setRgb(const std::shared_ptr<RgbImage>& image) { rgb_ = image; }
    const std::shared_ptr<RgbImage>& rgb() const { return rgb_; }

    int isColors() const override { return 1; }
    int getNColors() const override { return MapColors().count; }
    int getFirstColor() const override { return MapColors().first; }
    int getPlusColor() const override { return 1; }
    void cellsChanged() override;
    void draw(CDC& dc, CRect& rect, TMinMax& range) override;

    void followModule() override;
    /// In place of the module's as it was when the graph was made.
    void setPaletteColors(const SharedPalette& palette) override;
    /// The palette of the graph; null without any.
    const SharedPalette& paletteColors() const;

    /// The 226 map colours, `playedWith` or as they are before it.
    AArray<COLORREF> mapColors(const AColorPlay& playedWith) const;

    /// Bitmap-info block of 40 bytes and a table of 256 colours for an 8-bit image of map colours.
    std::vector<unsigned char> imageHeader(int width, int height) const;

protected:
    /// The colour map without what lies over it.
    void drawCells(CDC& dc) const;

private:
    void drawIntoRaster() const;
    void drawImage(CDC& dc, const PixelCells& x, const PixelCells& y, const CRect& target) const;
    void drawOnPage(CDC& dc) const;
    void drawRgb(CDC& dc, const PixelCells& x, const PixelCells& y, const CRect& shown,
                 const CRect& pixels) const;
    int showPixels(const PixelCells& x, const PixelCells& y) const;
    int unplayedEntries(int first, int count, PALETTEENTRY* entries) const;
    void useAxisPalette() const;
    int hasRanks(const MapScale& colorScale) const;

    std::shared_ptr<RgbImage> rgb_;
    MapScaleKind kind_ = MapScaleKind::linear;
    SharedPixel shared_ = SharedPixel::greatest;
    AArray<COLORREF> colors_;
    MapColors indices_;
    COLORREF blankColor_ = RGB(192, 192, 192);
    mutable MapScale scale_;
    mutable TMnMx scaleRange_;
    mutable int hasScale_ = 0;
    mutable MapRanks ranks_;
    mutable int ranked_ = 0;  ///< 1 when the ranks are those of the scale, -1 without memory
    mutable int drawn_ = 0;   ///< whether the cells were drawn on this scale before
    mutable KeptPixels kept_;
    AColorPlay play_;
    AColorPlay settledPlay_;  ///< before the drag that is going on
    int playGoes_ = 0;
    mutable SharedPalette palette_ = ModulePalette(0);
    int hasOwnPalette_ = 0;
    mutable AxisPaletteHolder axisPalette_;
};

}  // namespace pavane

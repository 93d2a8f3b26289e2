#pragma once

#include "pavane/axes/AGraph.h"
#include "pavane/axes/axis_options.h"
#include "pavane/axes/axis_settings.h"
#include "pavane/axes/ranges/TMinMax.h"
#include "pavane/containers/AObjArray.h"
#include "pavane/containers/APtrArray.h"
#include "pavane/images/palettes.h"
#include "platform/api.h"
#include "platform/gdi_constants.h"
#include "platform/geometry.h"
#include "platform/message.h"
#include "platform/types.h"

namespace pavane
{

class ADIBase;
class CDC;
class CFont;

/// The base of every axis object: holds the data range of a plot and the device rectangle that it
/// fills, converts between data values (RP), fractions of the span (WP) and device pixels (GP),
/// owns the graphs drawn in it and draws their lines and markers, into a device context or, in
/// bitmap mode, into a raster.
///
/// What the module's functions set (palette, sizes of markers and fonts, the receiver of messages)
/// it keeps as it was when it was made; windows call followModule. So axes of several threads leave
/// each other alone.
///
/// Use: construct, set options, titles, digits and intervals, register graphs, then let a plane
/// axis lay out and draw. Conversions need a graph rectangle and a range; without them they
/// saturate.
class PAVANE_API ABAxis
{
public:
    /// `xDirect`, `yDirect`: 1 linear, -1 linear reversed, 0 logarithmic, 2 (x only) time in
    /// seconds. `range` is copied; null leaves it to the graphs. `options`: AxisOption bits.
    ABAxis(int xDirect, int yDirect, TMinMax* range, int options);
    /// A copy has its own raster and no cache file. It draws the graphs of `other` in its own
    /// layout without owning them, so `other` has to outlive it; graphs registered with the copy
    /// are its own.
    ABAxis(const ABAxis& other);
    ABAxis& operator=(const ABAxis& other);
    /// Frees the raster, deletes the cache file and the graphs that the axis owns.
    virtual ~ABAxis();

    /// The header lines of index `index` of all graphs, one after another in drawing order.
    virtual CString getHeaderString(int index) const;
    /// Appends a graph, which the axis owns from now on; returns its index.
    virtual int addChild(AGraph* graph);
    /// The same in this class; axes with several scales sort items in their own way.
    virtual int addChildItem(AGraph* graph);
    /// Draws the graphs in order; returns how many there are.
    virtual int drawChilds(CDC& dc, CRect& rect, TMinMax& range);
    /// Draws the whole axis into `rect`; nothing in this class.
    virtual void draw(CDC& dc, CRect& rect);
    /// Working colour `index`, 0 to 9: white, black, grey, light grey, yellow, cyan, magenta, red,
    /// green, blue; with a palette, the palette entry of that colour. Other indices count as black.
    virtual COLORREF workColor(int index) const;
    /// 0 for this class, 10 and 11 for the plane axes.
    virtual int GetAxisType() const;

protected:
    /// Makes ready to draw: the palette of bitmap mode, the range, the logarithms.
    virtual void setUpParameters();
    /// Logarithms of the ends of `range` in each logarithmic direction, unless they are set. A
    /// range that reaches 0 turns the direction into a linear one for good.
    virtual void setUpLogMnMx(TMinMax& range);
    /// Fills an unset range, and ends that are not finite, from the graphs, repairs equal and
    /// reversed pairs, and returns it.
    virtual TMinMax& createMinMax();

public:
    /// Fixes the range, the font height and the graph rectangle for a picture of `rect` without
    /// drawing, as draw does itself; so a host can make square cells: lay out, compare
    /// getGraphRect with its map, set bounds by setBorderRect, draw. Non-zero when a graph
    /// rectangle with pixels in it is left. This class leaves everything as it is and returns 0.
    virtual int layOut(CDC& dc, const CRect& rect);
    /// Non-zero after layOut or draw when there are graphs and none of them has a finite point;
    /// this class has data.
    virtual int isWithoutData() const;
    /// Whether the range of the axis takes in that of `graph`; all graphs here.
    virtual int countsInRange(const AGraph& graph) const;

    // Conversions. RPZtoWPZ is always linear. Empty spans and rectangles give infinities as
    // fractions and saturated pixels.
    double RPXtoWPX(const double& x) const;
    double RPYtoWPY(const double& y) const;
    double RPZtoWPZ(const double& z) const;
    int RPXtoGPX(const double& x) const;
    int RPYtoGPY(const double& y) const;
    double GPXtoRPX(const int& gx) const;
    double GPYtoRPY(const int& gy) const;
    double GPXtoWPX(const int& gx) const;
    double GPYtoWPY(const int& gy) const;
    /// The point (x, y) in device units with its fraction of a pixel, for smooth pictures and
    /// pages.
    CPointF RPtoGPF(double x, double y) const;

    // Ticks; see ticks.h and time_ticks.h for what they do.
    static double getAxisPar(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                             double& first, double& step, int& power, int engineering);
    static double getAxisPar_Power(double& min, double& max, int& nIntervals, int& nPlus,
                                   int& nMinus, double& first, double& step, int power);
    static int getPower(double value, int nPlus, int nMinus);
    static int getMaxPower(double a, double b, int nPlus, int nMinus);
    static int getCorrectMaxPower(double a, double b, int& nPlus, int& nMinus);
    static int getCorrect3MaxPower(double a, double b, int& nPlus, int& nMinus);
    static int checkMinMax(double& min, double& max);
    static int getAxisTimePar(TMnMx range, int n, AArray<double>& ticks, AObjArray<CString>& labels,
                              CString* header);

    // Drawing, in device coordinates. In bitmap mode everything goes into the raster.
    /// A line without its last pixel.
    void line(const int& x1, const int& y1, const int& x2, const int& y2);
    /// A line with its last pixel.
    void lineV(const int& x1, const int& y1, const int& x2, const int& y2);
    /// Markers at (x, y). `color` is a COLORREF; in bitmap mode a value below 256 that is not one
    /// of the working colours is taken as a palette index.
    /// A dot of fHeight / parts().point.
    void point(const int& x, const int& y, const unsigned long& color);
    void pointCross(const int& x, const int& y, const unsigned long& color);
    void pointCrossInv(const int& x, const int& y, const unsigned long& color);
    /// An upright bar of the height of a cross and half its width.
    void pointBar(const int& x, const int& y, const unsigned long& color);
    /// How far markers reach from their point, without the width of their pen.
    int markerReach() const;
    /// Device units of a marker that is a part of the font height, at least a pixel of 96 per inch:
    /// as large on every device. Needs the context.
    int markerSize(int part) const;
    /// Device width of a graph's line (graph_styles.h), in the same way.
    int graphLine(int width) const;
    /// Non-zero when the context draws vectors: strokes then end at their last point.
    int isOnPage() const;
    /// Palette index of a colour in bitmap mode, the nearest one for colours out of the palette.
    /// RGB(r, 0, 0) is a dark red here; only markers take it for the index r.
    int paletteIndex(COLORREF color) const;

    // Fonts
    /// Height of the label font in logical units for a picture of `rect`.
    int calcFontHeight(CDC& dc, CRect& rect) const;
    /// The label font in pixels of 96 per inch, for pictures of any size; 0, as at first: in
    /// proportion to the picture.
    void setWantedFHeight(int pixels) { wantedFHeight_ = pixels; }
    /// The axis font: Arial, upright or turned counter-clockwise by `angle` degrees.
    static int CreateAxisFont(CFont& font, int height, int bold, double angle);

    /// Selects and realises the axis palette in the current context; returns the one selected
    /// before, null when the axis has none.
    HPALETTE BeginPalette();
    /// Selects `old` again when it is not null.
    void EndPalette(HPALETTE old);

    /// The range. After changing it through the reference call resetLogarithms, or use setMinMax.
    TMinMax& getMinMax() { return range_; }
    const TMinMax& getMinMax() const { return range_; }
    /// Sets the range and forgets the logarithms of the old one. At the next drawing the graphs
    /// give the whole range when that of x is not set, and each end that is not finite.
    void setMinMax(const TMinMax& range);
    void resetLogarithms();
    int getXDirect() const { return xDirect_; }
    int getYDirect() const { return yDirect_; }
    /// The current context, not owned; set while a plane axis draws.
    CDC* dc() const { return dc_; }
    void setDc(CDC* dc) { dc_ = dc; }
    const CString& getNameOX() const { return nameOX_; }
    const CString& getNameOY() const { return nameOY_; }
    void setNameOX(const CString& name) { nameOX_ = name; }
    void setNameOY(const CString& name) { nameOY_ = name; }
    /// Height of the label font in device units; sizes of markers and ticks follow it.
    int getFHeight() const { return fHeight_; }
    void setFHeight(int height) { fHeight_ = height; }
    int getLineWidth() const { return lineWidth_; }
    void setLineWidth(int width);
    int getLineStyle() const { return lineStyle_; }
    void setLineStyle(int style);
    COLORREF getColor() const { return color_; }
    void setColor(COLORREF color);
    int getOptions() const { return options_; }
    void setOptions(int options) { options_ = options; }
    /// The options that are in `mask`.
    int getFlag(int mask) const { return options_ & mask; }
    /// 1 when any bit of `mask` is set.
    int isFlagSet(int mask) const { return (options_ & mask) != 0; }
    void setFlag(int mask, int on) { options_ = on ? options_ | mask : options_ & ~mask; }
    /// Where the data area lies, in device pixels: xMin at left, xMax at right (both inclusive).
    const CRect& getGraphRect() const { return graphRect_; }
    void setGraphRect(const CRect& rect) { graphRect_ = rect; }
    /// Bounds of the graph rectangle: least left and top edge, least distance from the right and
    /// the bottom of the picture; -1 for no bound.
    const CRect& getBorderRect() const { return borderRect_; }
    void setBorderRect(const CRect& rect) { borderRect_ = rect; }
    // Digits of a label before and after the decimal point, and the wanted tick intervals.
    int nxpDigit() const { return nxpDigit_; }
    int nxmDigit() const { return nxmDigit_; }
    int nypDigit() const { return nypDigit_; }
    int nymDigit() const { return nymDigit_; }
    void setNxpDigit(int digits) { nxpDigit_ = digits; }
    void setNxmDigit(int digits) { nxmDigit_ = digits; }
    void setNypDigit(int digits) { nypDigit_ = digits; }
    void setNymDigit(int digits) { nymDigit_ = digits; }
    int xIntervals() const { return xIntervals_; }
    int yIntervals() const { return yIntervals_; }
    void setXIntervals(int n) { xIntervals_ = n; }
    void setYIntervals(int n) { yIntervals_ = n; }
    /// The raster of bitmap mode, owned by the axis; null for none. SetDib frees the old one.
    ADIBase* dib() const { return dib_; }
    void SetDib(ADIBase* dib);
    /// Takes over what the module's functions have set since the axis was made, where the host gave
    /// it nothing of its own, and so do its graphs. In the thread that draws the axis.
    virtual void followModule();
    /// The colours of bitmap mode, and of the maps that the axis has now; null gives them those of
    /// the module again.
    void setPaletteColors(const SharedPalette& palette);
    /// Sizes of markers and fonts (axis_settings.h).
    const AxisParts& parts() const { return parts_; }
    void setParts(const AxisParts& parts);
    /// Who hears of a cached raster that cannot be used.
    void setMessages(const MessageReceiver& messages) { messages_ = messages; }
    /// Non-zero when the axis has the palette that it made of its colours, not one of the host.
    int hasPaletteOfColors() const { return palette_ == &colorPalette_; }
    /// Palette of the working and map colours; null for none, not owned. In bitmap mode an axis
    /// without one makes it of its colours when it is drawn.
    HPALETTE* getPalette() const { return palette_; }
    void setPalette(HPALETTE* palette) { palette_ = palette; }
    /// File of the cached raster, deleted with the axis; empty for none.
    const CString& getTempFileName() const { return tempFileName_; }
    void setTempFileName(const CString& name) { tempFileName_ = name; }
    /// Logarithms of the ends of a logarithmic direction; the least above the greatest when unset.
    TMnMx logX() const { return {logXMin_, logXMax_}; }
    TMnMx logY() const { return {logYMin_, logYMax_}; }
    /// After how much y begins anew, 360 for phases in degrees; 0 for never, as it is here. No
    /// curve joins points that lie more than half of it apart.
    double yPeriod() const { return yPeriod_; }
    const APtrArray<AGraph*>& childs() const { return childs_; }

protected:
    TMinMax range_;
    signed char xDirect_ = 1;
    signed char yDirect_ = 1;
    CDC* dc_ = nullptr;
    CString nameOX_;
    CString nameOY_;
    int fHeight_ = 0;
    int wantedFHeight_ = 0;
    int lineWidth_ = 0;
    int lineStyle_ = PS_SOLID;
    int options_ = 0;
    COLORREF color_ = 0;
    CRect graphRect_;
    CRect borderRect_{-1, -1, -1, -1};
    int nxpDigit_ = 1;
    int nxmDigit_ = 2;
    int nypDigit_ = 1;
    int nymDigit_ = 2;
    int xIntervals_ = 5;
    int yIntervals_ = 5;
    ADIBase* dib_ = nullptr;
    HPALETTE* palette_ = nullptr;
    CString tempFileName_;
    double logXMin_ = unsetMinimum;
    double logXMax_ = unsetMaximum;
    double logYMin_ = unsetMinimum;
    double logYMax_ = unsetMaximum;
    int reserved_ = 0;  ///< for derived classes
    double yPeriod_ = 0;
    APtrArray<AGraph*> childs_{0, 0, 4};
    MessageReceiver messages_;

private:
    void copyFrom(const ABAxis& other);
    void makePalette();
    /// Takes the graphs of another axis out of the list, so that emptying it deletes only the own.
    void letGoOfSharedGraphs();
    /// Two strokes, each from (left, top) to (right, bottom) without its last pixel.
    void markerStrokes(const unsigned long& color, const CRect& first, const CRect& second);
    void markerBlock(const unsigned long& color, const CRect& edgesIncluded);

    AArray<AGraph*> sharedGraphs_;  ///< those that another axis owns
    AxisParts parts_ = GetAxisParts();
    SharedPalette colors_ = ModulePalette(0);
    HPALETTE colorPalette_ = nullptr;  ///< made of the colours
    int hasOwnParts_ = 0;
    int hasOwnColors_ = 0;
};

}  // namespace pavane

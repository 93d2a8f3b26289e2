#include "pavane/axes/ABAxis.h"

#include "pavane/axes/range_repair.h"
#include "pavane/axes/ranges/decimal_power.h"
#include "pavane/axes/ranges/ticks.h"
#include "pavane/axes/ranges/time_ticks.h"
#include "pavane/images/ADIBase.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace pavane
{
namespace
{

/// Working colours start at this palette entry, after the map colours.
constexpr int firstWorkEntry = 226;
constexpr COLORREF workColors[] = {0xFFFFFF, 0x000000, 0x808080, 0xC0C0C0, 0x00FFFF,
                                   0xFFFF00, 0xFF00FF, 0x0000FF, 0x00FF00, 0xFF0000};
constexpr int workColorCount = static_cast<int>(std::size(workColors));

bool isFinite(const TMinMax& r)
{
    return std::isfinite(r.xMin) && std::isfinite(r.xMax) && std::isfinite(r.yMin) &&
           std::isfinite(r.yMax) && std::isfinite(r.zMin) && std::isfinite(r.zMax);
}

/// Decides one direction of setUpLogMnMx.
void setUpLogarithms(signed char& direct, double min, double max, double& logMin, double& logMax)
{
    if (direct != 0 || !(max > min))
        return;
    if (!(min > 0)) {
        direct = 1;
        return;
    }
    if (logMin > logMax) {
        logMin = std::log10(min);
        logMax = std::log10(max);
    }
}

int squaredDistance(COLORREF a, const PALETTEENTRY& b)
{
    const int red = GetRValue(a) - b.peRed;
    const int green = GetGValue(a) - b.peGreen;
    const int blue = GetBValue(a) - b.peBlue;
    return red * red + green * green + blue * blue;
}

}  // namespace

ABAxis::ABAxis(int xDirect, int yDirect, TMinMax* range, int options)
    : xDirect_(static_cast<signed char>(xDirect)), yDirect_(static_cast<signed char>(yDirect)),
      options_(options)
{
    color_ = ABAxis::workColor(1);
    if (range)
        range_ = *range;
}

ABAxis::ABAxis(const ABAxis& other) { copyFrom(other); }

ABAxis& ABAxis::operator=(const ABAxis& other)
{
    if (this == &other)
        return *this;
    letGoOfSharedGraphs();
    childs_.Free();
    SetDib(nullptr);
    if (!tempFileName_.empty())
        std::remove(tempFileName_.c_str());
    copyFrom(other);
    return *this;
}

ABAxis::~ABAxis()
{
    letGoOfSharedGraphs();
    DeletePalette(colorPalette_);
    delete dib_;
    if (!tempFileName_.empty())
        std::remove(tempFileName_.c_str());
}

void ABAxis::copyFrom(const ABAxis& other)
{
    range_ = other.range_;
    xDirect_ = other.xDirect_;
    yDirect_ = other.yDirect_;
    dc_ = other.dc_;
    nameOX_ = other.nameOX_;
    nameOY_ = other.nameOY_;
    fHeight_ = other.fHeight_;
    wantedFHeight_ = other.wantedFHeight_;
    lineWidth_ = other.lineWidth_;
    lineStyle_ = other.lineStyle_;
    options_ = other.options_;
    color_ = other.color_;
    graphRect_ = other.graphRect_;
    borderRect_ = other.borderRect_;
    nxpDigit_ = other.nxpDigit_;
    nxmDigit_ = other.nxmDigit_;
    nypDigit_ = other.nypDigit_;
    nymDigit_ = other.nymDigit_;
    xIntervals_ = other.xIntervals_;
    yIntervals_ = other.yIntervals_;
    dib_ = other.dib_ ? new (std::nothrow) ADIBase(*other.dib_) : nullptr;
    parts_ = other.parts_;
    hasOwnParts_ = other.hasOwnParts_;
    colors_ = other.colors_;
    hasOwnColors_ = other.hasOwnColors_;
    messages_ = other.messages_;
    palette_ = other.palette_;
    if (other.hasPaletteOfColors())
        makePalette();
    tempFileName_.clear();
    logXMin_ = other.logXMin_;
    logXMax_ = other.logXMax_;
    logYMin_ = other.logYMin_;
    logYMax_ = other.logYMax_;
    reserved_ = other.reserved_;
    yPeriod_ = other.yPeriod_;
    childs_ = other.childs_;
    sharedGraphs_ = other.childs_;
}

void ABAxis::letGoOfSharedGraphs()
{
    AGraph** const shared = sharedGraphs_.lpArray();
    for (int i = 0; i < childs_.count(); ++i)
        if (std::find(shared, shared + sharedGraphs_.count(), childs_(i)) !=
            shared + sharedGraphs_.count())
            childs_(i) = nullptr;
}

CString ABAxis::getHeaderString(int index) const
{
    CString text;
    for (int i = 0; i < childs_.count(); ++i)
        if (childs_(i)->hasHeaderText(index))
            text += childs_(i)->getHeaderText(index);
    return text;
}

int ABAxis::addChild(AGraph* graph) { return childs_.Add(graph); }

int ABAxis::addChildItem(AGraph* graph) { return addChild(graph); }

int ABAxis::drawChilds(CDC& dc, CRect& rect, TMinMax& range)
{
    for (int i = 0; i < childs_.count(); ++i)
        childs_(i)->drawIn(*this, dc, rect, range);
    return childs_.count();
}

void ABAxis::draw(CDC&, CRect&) {}

COLORREF ABAxis::workColor(int index) const
{
    const int known = index >= 0 && index < workColorCount ? index : 1;
    return palette_ ? PALETTEINDEX(firstWorkEntry + known) : workColors[known];
}

int ABAxis::GetAxisType() const { return 0; }
int ABAxis::layOut(CDC&, const CRect&) { return 0; }
int ABAxis::isWithoutData() const { return 0; }
int ABAxis::countsInRange(const AGraph&) const { return 1; }

void ABAxis::setUpParameters()
{
    if (isFlagSet(axisBitmapMode) && !palette_)
        makePalette();
    setUpLogMnMx(createMinMax());
}

/// The palette of bitmap mode, from the colours of the axis.
void ABAxis::makePalette()
{
    if (!colors_)
        colors_ = ModulePalette();  // none was loaded when the axis was made
    palette_ = &colorPalette_;
    if (!colors_)
        return;
    if (colorPalette_)
        (void)SetPaletteEntries(colorPalette_, 0, colors_->count, colors_->entries);
    else
        colorPalette_ = CreatePalette(colors_->entries, colors_->count);
}

void ABAxis::followModule()
{
    messages_.takeModules();
    if (!hasOwnParts_)
        parts_ = GetAxisParts();
    if (const SharedPalette now = ModulePalette(0); !hasOwnColors_ && now != colors_) {
        colors_ = now;
        if (hasPaletteOfColors())
            makePalette();
    }
    for (int i = 0; i < childs_.count(); ++i)
        childs_(i)->followModule();
}

void ABAxis::setPaletteColors(const SharedPalette& palette)
{
    hasOwnColors_ = palette != nullptr;
    colors_ = palette ? palette : ModulePalette();
    if (hasPaletteOfColors())
        makePalette();
    for (int i = 0; i < childs_.count(); ++i)
        childs_(i)->setPaletteColors(palette);
}

void ABAxis::setParts(const AxisParts& parts)
{
    parts_ = parts;
    hasOwnParts_ = 1;
}

void ABAxis::setUpLogMnMx(TMinMax& range)
{
    setUpLogarithms(xDirect_, range.xMin, range.xMax, logXMin_, logXMax_);
    setUpLogarithms(yDirect_, range.yMin, range.yMax, logYMin_, logYMax_);
}

TMinMax& ABAxis::createMinMax()
{
    const TMinMax asked = range_;
    const bool isSet = !(asked.xMin >= asked.xMax);
    if (!isSet || !isFinite(asked)) {
        setMinMax(TMinMax());
        for (int i = 0; i < childs_.count(); ++i) {
            TMinMax own;
            if (!countsInRange(*childs_(i)))
                continue;
            childs_(i)->getMinMax(own);
            if (isUnset(own.xMin, own.xMax) && isUnset(own.yMin, own.yMax))
                continue;  // a graph without data
            for (const double x : {own.xMin, own.xMax})
                widen(range_.xMin, range_.xMax, x);
            for (const double y : {own.yMin, own.yMax})
                widen(range_.yMin, range_.yMax, y);
            for (const double z : {own.zMin, own.zMax})
                widen(range_.zMin, range_.zMax, z);
        }
    }
    if (isSet && !isFinite(asked)) {
        keepFiniteEnds(asked.xMin, asked.xMax, range_.xMin, range_.xMax);
        keepFiniteEnds(asked.yMin, asked.yMax, range_.yMin, range_.yMax);
        keepFiniteEnds(asked.zMin, asked.zMax, range_.zMin, range_.zMax);
    }
    repairPair(range_.xMin, range_.xMax);
    repairPair(range_.yMin, range_.yMax);
    repairPair(range_.zMin, range_.zMax);
    return range_;
}

void ABAxis::setMinMax(const TMinMax& range)
{
    range_ = range;
    resetLogarithms();
}

void ABAxis::resetLogarithms()
{
    logXMin_ = logYMin_ = unsetMinimum;
    logXMax_ = logYMax_ = unsetMaximum;
}

void ABAxis::SetDib(ADIBase* dib)
{
    if (dib_ != dib)
        delete dib_;
    dib_ = dib;
}

int ABAxis::paletteIndex(COLORREF color) const
{
    if (color & 0x01000000)
        return static_cast<int>(color & 0xFF);
    const auto* const known = std::find(std::begin(workColors), std::end(workColors), color);
    if (known != std::end(workColors))
        return firstWorkEntry + static_cast<int>(known - std::begin(workColors));
    PALETTEENTRY entries[256];
    const int count = palette_ && *palette_ ? GetPaletteEntries(*palette_, 0, 256, entries) : 0;
    const auto* const nearest =
        std::min_element(entries, entries + count, [color](const auto& a, const auto& b) {
            return squaredDistance(color, a) < squaredDistance(color, b);
        });
    return count > 0 ? static_cast<int>(nearest - entries) : firstWorkEntry + 1;
}

double ABAxis::getAxisPar(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                          double& first, double& step, int& power, int engineering)
{
    return chooseTicks(min, max, nIntervals, nPlus, nMinus, first, step, power, engineering);
}

double ABAxis::getAxisPar_Power(double& min, double& max, int& nIntervals, int& nPlus, int& nMinus,
                                double& first, double& step, int power)
{
    return chooseTicksForPower(min, max, nIntervals, nPlus, nMinus, first, step, power);
}

int ABAxis::getPower(double value, int nPlus, int nMinus)
{
    return decimalPower(value, nPlus, nMinus);
}

int ABAxis::getMaxPower(double a, double b, int nPlus, int nMinus)
{
    return greaterPower(a, b, nPlus, nMinus);
}

int ABAxis::getCorrectMaxPower(double a, double b, int& nPlus, int& nMinus)
{
    return labelPower(a, b, nPlus, nMinus);
}

int ABAxis::getCorrect3MaxPower(double a, double b, int& nPlus, int& nMinus)
{
    return engineeringPower(a, b, nPlus, nMinus);
}

int ABAxis::checkMinMax(double& min, double& max) { return repairEqualEnds(min, max); }

int ABAxis::getAxisTimePar(TMnMx range, int n, AArray<double>& ticks, AObjArray<CString>& labels,
                           CString* header)
{
    return chooseTimeTicks(range, n, ticks, labels, header);
}

}  // namespace pavane

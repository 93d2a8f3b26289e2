#include "pavane/axes/dialogs/ABeamWnd.h"

#include "pavane/axes/AGraphXYLine.h"
#include "pavane/axes/AGraphXYPoint.h"
#include "pavane/axes/graph_styles.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/beam_form.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/multi/A2DAxisMulti.h"
#include "pavane/axes/windows/show_map.h"
#include "pavane/resources/map_display_messages.h"

#include <cmath>
#include <numbers>

namespace pavane
{

namespace
{

constexpr COLORREF majorColor = RGB(0, 60, 180);
constexpr COLORREF minorColor = RGB(190, 60, 0);
constexpr COLORREF outlineColor = RGB(255, 255, 255);
constexpr int outlinePoints = 180;
constexpr unsigned acrossId = 1, downId = 2, mapId = 3, cutsId = 4, tableId = 5;

/// Full width of an ellipse through its centre, `turn` degrees from its major axis.
double widthAt(const MapBeam& beam, double turn)
{
    const double angle = turn * std::numbers::pi / 180;
    return 1 / std::hypot(std::cos(angle) / beam.major, std::sin(angle) / beam.minor);
}

/// What the axes of a map count, as titles have it.
const char* axisUnitText(const MapFrame& frame)
{
    return !frame.onSky               ? " [pixels]"
           : frame.arcseconds == 1    ? " [%sas]"
           : frame.arcseconds == 60.0 ? " [arcmin]"
                                      : " [deg]";
}

}  // namespace

ABeamWnd::~ABeamWnd()
{
    DestroyWindow();
    // graphs read the curves of this object
    cutsWindow_.SetPlot(nullptr, 0);
    mapWindow_.SetAxis(nullptr, 0);
}

int ABeamWnd::CreateBeam(const MapContent& content, const CString& title, unsigned style,
                         const CRect& rect, CWnd* parent, CString& error)
{
    const AFloatMatrixAccess cells(content.map.cells);
    if (!beamShape(cells, content.frame.centres(), shape_))
        return error = noBeamShapeText, 0;
    content_ = &content;
    const double angle = shape_.fitted.isSet() ? shape_.fitted.angle : 0;
    constexpr double quarter = 90;
    makeCut(major_, angle, shape_.fitted.isSet() ? widthAt(shape_.fitted, 0) : 0);
    makeCut(minor_, angle + quarter, shape_.fitted.isSet() ? widthAt(shape_.fitted, quarter) : 0);
    if (!Create(GetWndClassName(), title, style, rect, parent, 0))
        return error = noBeamWindowText, 0;
    CRect client;
    GetClientRect(client);
    if (!makePanes(client)) {
        DestroyWindow();
        return error = noBeamWindowText, 0;
    }
    picture_.show(content);
    picture_.graph().contours().setLevels({LevelUnit::absolute, {}});
    drawOutline();
    showMap(mapWindow_, picture_);
    showCuts();
    showNumbers();
    return 1;
}

int ABeamWnd::makePanes(const CRect& client)
{
    constexpr unsigned child = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    if (!across_.Create(CSplitterWnd::Split::columns, child, client, this, acrossId) ||
        !down_.Create(CSplitterWnd::Split::rows, child, client, &across_, downId) ||
        !mapWindow_.Create("", "", child, client, &across_, mapId) ||
        !cutsWindow_.Create("", "", child, client, &down_, cutsId) ||
        !table_.Create(table_.GetWndClassName(), "", child, client, &down_, tableId))
        return 0;
    across_.SetPanes(&mapWindow_, &down_);
    down_.SetPanes(&cutsWindow_, &table_);
    constexpr double cutsShare = 0.55;
    across_.SetShare(0.5);
    down_.SetShare(cutsShare);
    return 1;
}

/// The Gaussian has the height of the peak, where the cut goes through it.
void ABeamWnd::makeCut(Curves& curves, double angle, double width)
{
    const AFloatMatrixAccess cells(content_->map.cells);
    curves.angle = angle;
    curves.cut = cutBeam(cells, content_->frame.centres(), shape_.peak, angle);
    curves.fitted.clear();
    for (const double at : curves.cut.distance)
        if (width > 0)
            curves.fitted.push_back(shape_.peak.value *
                                    std::exp(-4 * std::numbers::ln2 * (at / width) * (at / width)));
    curves.marks = 0;
    for (const double at : {curves.cut.halfBefore, curves.cut.halfAfter})
        if (std::isfinite(at)) {
            curves.marksX[curves.marks] = at;
            curves.marksY[curves.marks++] = shape_.peak.value / 2;
        }
}

void ABeamWnd::drawOutline()
{
    outlineX_.clear();
    outlineY_.clear();
    if (!shape_.fitted.isSet())
        return;
    std::vector<CPointF> outline = beamOutline(shape_.fitted, 1, 1, outlinePoints);
    outline.push_back(outline.front());
    for (const CPointF& p : outline) {
        outlineX_.push_back(shape_.peak.x - p.x);  // outlines have east at the left
        outlineY_.push_back(shape_.peak.y + p.y);
    }
    new AGraphXYLine(&picture_.axis(), outlineX_.data(), outlineY_.data(),
                     static_cast<int>(outlineX_.size()), nullptr, PS_SOLID, 1, outlineColor, 0);
}

void ABeamWnd::showCuts()
{
    auto* const axis = new A2DAxisMulti(1, 1, nullptr, axisGridX | axisGridY);
    const struct {
        Curves& curves;
        COLORREF color;
        const char *name, *fitted;
    } all[] = {{major_, majorColor, majorCutText, majorFitText},
               {minor_, minorColor, minorCutText, minorFitText}};
    for (const auto& each : all) {
        Curves& c = each.curves;
        const int points = static_cast<int>(c.cut.value.size());
        auto* const cut = new AGraphXYLine(axis, c.cut.distance.data(), c.cut.value.data(), points,
                                           nullptr, PS_SOLID, 1, each.color, 0);
        cut->setGraphName(each.name);
        if (!c.fitted.empty()) {
            auto* const fit = new AGraphXYLine(axis, c.cut.distance.data(), c.fitted.data(), points,
                                               nullptr, PS_DASH, 1, each.color, 0);
            fit->setGraphName(each.fitted);
        }
        if (c.marks > 0)
            new AGraphXYPoint(axis, c.marksX, c.marksY, c.marks, nullptr, graphPointCross, 2,
                              each.color, 0);
    }
    axis->setLegend(legendTopRight);
    axis->setNameOX(CString(fromPeakText) + axisUnitText(content_->frame));
    axis->setNameOY(content_->frame.valueTitle);
    cutsWindow_.SetPlot(axis, 1);
}

void ABeamWnd::showNumbers()
{
    const MapFrame& frame = content_->frame;
    const int unit = BeamForm::handyUnit(shape_.fitted, frame.onSky ? frame.arcseconds : 0);
    const CString length = unit < beamUnits ? beamUnitTexts[unit] : beamAxisUnitText;
    const double scale = unit < beamUnits ? frame.arcseconds / beamUnitArcseconds[unit] : 1;
    const MapUnit named = mapUnit(content_->map.header.bunit);
    const CString value = named.prefix + named.name;
    std::vector<BeamNumber> numbers{{"Peak", shape_.peak.value, value}};
    const auto add = [&](const char* name, double number, const CString& unit) {
        if (std::isfinite(number))
            numbers.push_back({name, number, unit});
    };
    if (shape_.fitted.isSet()) {
        add("Fitted major axis", shape_.fitted.major * scale, length);
        add("Fitted minor axis", shape_.fitted.minor * scale, length);
        add("Fitted angle", shape_.fitted.angle, "deg");
    }
    add(shape_.fitted.isSet() ? "Half-power width, major" : "Half-power width, north",
        major_.cut.halfWidth() * scale, length);
    add(shape_.fitted.isSet() ? "Half-power width, minor" : "Half-power width, east",
        minor_.cut.halfWidth() * scale, length);
    if (shape_.hasSideLobe) {
        const double east = (shape_.sideLobe.x - shape_.peak.x) * scale;
        const double north = (shape_.sideLobe.y - shape_.peak.y) * scale;
        constexpr double degrees = 180 / std::numbers::pi;
        constexpr double perCent = 100;
        add("Greatest side lobe", shape_.sideLobe.value, value);
        add("  of the peak", perCent * shape_.sideLobe.value / shape_.peak.value, "%");
        add("  distance", std::hypot(east, north), length);
        add("  position angle", std::atan2(east, north) * degrees, "deg");
    }
    table_.SetNumbers(std::move(numbers));
}

void ABeamWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    if (across_.GetSafeHwnd())
        across_.MoveWindow(CRect(0, 0, cx, cy));
}

void ABeamWnd::OnSetFocus(CWnd* old)
{
    ABWindow::OnSetFocus(old);
    if (mapWindow_.GetSafeHwnd())
        (void)mapWindow_.SetFocus();
}

void ABeamWnd::OnDestroy()
{
    cutsWindow_.SetPlot(nullptr, 0);
    mapWindow_.SetAxis(nullptr, 0);
    ABWindow::OnDestroy();
}

}  // namespace pavane

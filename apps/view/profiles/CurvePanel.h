#pragma once

#include "apps/view/PartWindow.h"
#include "apps/view/profiles/curves.h"
#include "apps/view/profiles/ProfileLineMarks.h"
#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "tessel/FitsCubeReader.h"

#include <functional>
#include <memory>
#include <vector>

namespace pavane
{

class MapDocument;
class MapWindow;

/// A profile, a spectrum or a histogram below the map, with those that were kept beside it. It
/// follows the line, the areas and the pointer, and tells where in the map its own pointer is.
class CurvePanel : public PartWindow<AMultiPlotWnd>
{
public:
    enum class Kind { none, profile, spectrum, histogram };

    /// The window of the map, not owned, which outlives this one's use of it.
    void SetMapWindow(MapWindow* view);
    /// The map that is shown, not owned; null for none. To be told of another plane too.
    void SetMap(MapDocument* map);
    void Show(Kind kind);
    Kind kind() const { return kind_; }
    int isShown() const { return kind_ != Kind::none; }
    /// Areas, or the current one, are others. `isDrag`: followed as fast as that can be done.
    void AreasChanged(int isDrag);
    /// The pointer over the map.
    void PointerAt(const AxisStatus& status);
    ProfileLineMarks& line() { return line_; }
    const ProfileLineMarks& line() const { return line_; }
    /// Another line as a step that can be undone.
    void SetLine(const ProfileLine& line);
    /// The line was edited: what is measured along it is to follow.
    void LineEdited() { lineMoved(); }
    /// Keeps the curve as it is, beside those that follow.
    int Keep();
    void Forget();
    int kept() const { return static_cast<int>(kept_.size()); }
    const MeasuredCurve& keptCurve(int i) const { return *kept_[static_cast<std::size_t>(i)]; }
    /// Shows a curve as one that was kept, when it is of the same values as the one that is live.
    int AddKept(MeasuredCurve curve);
    /// Of the curve that is live.
    const MeasuredCurve& curve() const { return *live_; }

    std::function<void(const CString&)> notice;
    std::function<void()> savesPicture;

    const char* GetWndClassName() override { return "CurvePanel"; }
    void OnMultiStatus(const MultiStatus& status) override;
    void amMenuParse(CMenu* popup) override;

protected:
    void OnCopyToBMP() override
    {
        if (savesPicture)
            savesPicture();
    }

private:
    void firstLine();
    void lineMoved();
    void refresh(int isNew);
    int measure(MeasuredCurve& curve);
    int measureProfile(MeasuredCurve& curve);
    int measureSpectrum(MeasuredCurve& curve);
    int measureHistogram(MeasuredCurve& curve);
    int cellsOfArea(AreaCells& cells, CString& name) const;
    int openCube();
    void fillAxis();
    void newAxis();
    void showPointer(const AxisStatus& status);
    void tell(const CString& text) const
    {
        if (notice)
            notice(text);
    }

    MapWindow* view_ = nullptr;
    MapDocument* map_ = nullptr;
    ProfileLineMarks line_;
    Kind kind_ = Kind::none;
    std::unique_ptr<MeasuredCurve> live_ = std::make_unique<MeasuredCurve>();
    std::vector<std::unique_ptr<MeasuredCurve>> kept_;
    std::vector<AGraph*> graphs_;  ///< of the axis
    std::unique_ptr<FitsCubeReader> cube_;
    std::vector<MomentPlane> planes_;
    CString axisUnit_;
    int row_ = -1, column_ = -1;         ///< that was pointed at last
    int rows_ = -1, columns_ = -1;       ///< of the map for which the line is
    int isPointing_ = 0;                 ///< the two pointers follow each other: not round again
    double lastTook_ = 0, lastEnd_ = 0;  ///< seconds
};

}  // namespace pavane

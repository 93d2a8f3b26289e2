#pragma once

#include "pavane/axes/dialogs/ABeamTbl.h"
#include "pavane/axes/maps/cells/beam_shape.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/windows/controls/ASplitterWnd.h"

#include <memory>
#include <vector>

namespace pavane
{

/// A dirty beam: its map with the outline of the fitted beam at half power, cuts along the major
/// and the minor axis of that with half-power marks and the Gaussian over them, and the numbers.
/// Where nothing fits, the cuts go north and east.
class PAVANE_API ABeamWnd : public ABWindow
{
public:
    ~ABeamWnd() override;

    /// Makes the window for a dirty beam, which has to outlive it. Non-zero on success; else 0, and
    /// `error` is a line.
    int CreateBeam(const MapContent& content, const CString& title, unsigned style,
                   const CRect& rect, CWnd* parent, CString& error);
    const BeamShape& GetShape() const { return shape_; }
    /// Along the major axis (0) and the minor one.
    const BeamCut& GetCut(int index) const { return index ? minor_.cut : major_.cut; }

    AAxisWnd& mapWindow() { return mapWindow_; }
    APlotWnd& cutsWindow() { return cutsWindow_; }
    ABeamTbl& table() { return table_; }
    const char* GetWndClassName() override { return "ABeamWnd"; }
    int GetMenuID() override { return 0; }

protected:
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    void OnDestroy() override;

private:
    /// A cut with what is drawn over it; graphs point into it.
    struct Curves {
        BeamCut cut;
        double angle = 0;
        std::vector<double> fitted;
        double marksX[2] = {};
        double marksY[2] = {};
        int marks = 0;
    };
    int makePanes(const CRect& client);
    void makeCut(Curves& curves, double angle, double width);
    void drawOutline();
    void showCuts();
    void showNumbers();

    const MapContent* content_ = nullptr;
    MapPicture picture_;
    BeamShape shape_;
    Curves major_, minor_;
    std::vector<double> outlineX_, outlineY_;
    ASplitterWnd across_, down_;
    AAxisWnd mapWindow_;
    APlotWnd cutsWindow_;
    ABeamTbl table_;
};

}  // namespace pavane

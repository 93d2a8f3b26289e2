#pragma once

#include "apps/view/main_menu.h"
#include "apps/view/UvPlotGraph.h"
#include "pavane/axes/windows/APlotWnd.h"
#include "platform/CMenu.h"

namespace pavane
{

/// What the plot tells the window around it.
class UvPlotOwner
{
public:
    virtual ~UvPlotOwner() = default;
    virtual void plotStatus(const AxisStatus& status) = 0;
    /// A click that was no rubber band, at a place of the plot.
    virtual void plotClicked(const AxisStatus& status) = 0;
    /// A rectangle was drawn with Shift held: what lies in it is to be listed.
    virtual void plotBoxed(const UvRange& range) = 0;
    virtual void plotSavePicture() = 0;
};

/// Visibilities of a file in their view, which may still be read, and the amplitudes of a model.
class UvPlotWindow : public APlotWnd
{
public:
    explicit UvPlotWindow(UvPlotOwner& owner) : owner_(owner) {}
    /// Shows other points, none with null; in their whole range, unless `keepRange` is non-zero and
    /// the user has chosen one. Neither is owned.
    void ShowPoints(const AUVXFile* file, const UvPlotPoints* points, int keepRange);
    /// More of them have been read: shows them, with `all` non-zero what their whole range is, too.
    /// A range that the user chose stays.
    void PointsRead(int all);
    /// Computes the amplitudes of a model where the points lie; without components it goes.
    void ShowModel(const AComponents& model);
    /// What the plot shows, in x and y; none before the first paint.
    UvRange ShownRange();
    /// A frame about a point, null for none.
    void ChoosePoint(const UvPlotPoint* point);

    void OnStatus(const AxisStatus& status) override;
    void amMenuParse(CMenu* popup) override;

protected:
    int takePress(unsigned flags, CPoint point) override;
    void OnLButtonUp(unsigned flags, CPoint point) override;
    void OnCopyToBMP() override { owner_.plotSavePicture(); }

private:
    UvRange rangeOf(CPoint one, CPoint other);

    UvPlotOwner& owner_;
    const AUVXFile* file_ = nullptr;
    const UvPlotPoints* points_ = nullptr;
    UvView view_;
    UvPlotGraph* graph_ = nullptr;   ///< of the axis
    UvModelGraph* model_ = nullptr;  ///< of the axis
    CPoint pressed_{-1, -1};
};

}  // namespace pavane

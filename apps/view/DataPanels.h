#pragma once

#include "apps/view/plot_options.h"
#include "pavane/calibration/windows/ABaselineWnd.h"
#include "pavane/calibration/windows/AClosureWnd.h"
#include "pavane/tables/uvdata/UvObservation.h"

#include <string>
#include <vector>

namespace pavane
{

/// What the panels of visibilities tell the window around them.
class PanelsOwner
{
public:
    virtual ~PanelsOwner() = default;
    /// What is under the pointer, "" for nothing.
    virtual void panelsStatus(const CString& text) = 0;
    /// More has been read, or all.
    virtual void panelsRead() = 0;
    virtual void panelsLeft(int step) = 0;
};

/// A window of panels that tells its owner.
template <class Base>
class ToldPanels : public Base
{
public:
    explicit ToldPanels(PanelsOwner& owner) : owner_(owner) {}
    void OnMultiStatus(const MultiStatus& status) override
    {
        owner_.panelsStatus(this->GetAxis() && status.inPlot ? statusText(*this->GetAxis(), status)
                                                             : CString());
    }
    void OnReading() override { owner_.panelsRead(); }
    void OnPanelsLeft(int step) override { owner_.panelsLeft(step); }

private:
    PanelsOwner& owner_;
};

/// The panels of the window of visibilities: amplitude and phase of baselines against time or
/// channel, closure phases or closure amplitudes.
class DataPanels
{
public:
    explicit DataPanels(PanelsOwner& owner) : baselines_(owner), closure_(owner) {}

    /// Makes both windows without showing them. Non-zero on success.
    int Create(CWnd* parent, unsigned firstId);
    /// Null for uvdist.
    AChartWnd* window(DataPlot kind);
    /// What the command line chose of the first file for a kind of plot; "" for all. Holds until
    /// another kind, or something else of the file, is chosen.
    void SetList(const std::string& list, DataPlot kind)
    {
        list_ = list;
        listKind_ = kind;
    }
    void DropList() { list_.clear(); }
    /// Reads what is marked, in colours and means as far as the plot has them; those that the user
    /// chose for triangles win. `baselines` are those that the file has, found to the end. Non-zero
    /// on success; else `error` is a clause without its subject, and nothing is shown.
    int Read(DataPlot kind, UvObservation& observation, const UvMarks& marks,
             const AComponents& model, const BaselineDivision& division, std::string& error);
    /// Asks which triangles are shown. Non-zero when others are.
    int AskTriangles(CWnd* parent, UvObservation& observation, const UvMarks& marks);
    /// Before the file goes; the choices were of that file.
    void ForgetFile();
    /// Shows and reads nothing.
    void Clear();
    void SetPanelsOfPage(int panels);
    int GetPanelsOfPage() const { return baselines_.GetPanelsOfPage(); }

private:
    std::vector<UvBaseline> markedBaselines(UvObservation& observation, const UvMarks& marks) const;

    ToldPanels<ABaselineWnd> baselines_;
    ToldPanels<AClosureWnd> closure_;
    std::string list_;
    DataPlot listKind_ = DataPlot::uvdist;
    std::vector<ClosureTriangle> chosen_;  ///< by the user; empty: an independent set
    ClosureAveraging averaging_;
};

}  // namespace pavane

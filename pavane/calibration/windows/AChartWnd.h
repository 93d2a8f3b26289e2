#pragma once

#include "pavane/axes/windows/AMultiPlotWnd.h"
#include "pavane/calibration/PanelChart.h"

#include <cstdint>
#include <string>

namespace pavane
{

/// A window of panels on pages that come from a data file, which is read in slices while the user
/// works; what has been read so far is shown now and then, in the view that the user has chosen.
/// Escape stops it, ResumeReading goes on. N and Shift+N show the next and the previous page.
class PAVANE_API AChartWnd : public AMultiPlotWnd
{
public:
    static constexpr int mostPanels = 50;
    ~AChartWnd() override;

    /// 1 to mostPanels. The page shown is that of the first panel on it.
    virtual void SetPanelsOfPage(int panels);
    int GetPanelsOfPage() const { return panels_; }
    int IsReading() const { return reading_; }
    /// 0 to 1.
    virtual double ReadDone() const = 0;
    /// Why the file could not be read to its end; "" else.
    const std::string& ReadError() const { return error_; }
    /// What has been read stays.
    void StopReading();
    /// Goes on where StopReading ended.
    void ResumeReading();
    /// Stopped before the end.
    int IsStopped() const { return stopped_; }
    /// Reads to the end at once; for tests, and for pictures without a user.
    void ReadAll();
    /// Called when more has been read, and when reading has ended.
    virtual void OnReading();
    /// The next panels by step 1, those before by -1: pages here, from the last to the first.
    virtual void ShowNext(int step);

protected:
    /// Reads some more; non-zero while more remains. 0 with a text in `error` when it cannot go on.
    virtual int readMore(std::string& error) = 0;
    /// The panels of what has been read.
    virtual PanelChart makeChart() = 0;
    /// Heirs call it when there is something else to read.
    void beginReading();
    /// Drops what is read, before its file goes.
    void endReading();
    /// Shows what has been read, with what is zoomed and the page as they are.
    void showRead();
    /// Shows other panels, from the first on.
    void showOthers();

    int takeKey(int key, bool shift, bool control) override;
    void OnTimer(unsigned id) override;

private:
    int readSlice();
    void endRead(int stopped);

    int panels_ = 12;
    int reading_ = 0;
    int stopped_ = 0;
    int atEnd_ = 0;  ///< read, but to be shown when a drag has ended
    std::string error_;
    std::int64_t shown_ = 0;  ///< when what has been read was shown last,
    std::int64_t pause_ = 0;  ///< and when at the earliest again, in milliseconds after it
};

}  // namespace pavane

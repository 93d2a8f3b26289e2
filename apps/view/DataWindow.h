#pragma once

#include "apps/view/DataDocument.h"
#include "apps/view/DataPanels.h"
#include "apps/view/options.h"
#include "apps/view/print_commands.h"
#include "apps/view/recent_files.h"
#include "apps/view/Relay.h"
#include "apps/view/StatusLine.h"
#include "apps/view/UvPlotWindow.h"
#include "apps/view/UvRowsTbl.h"
#include "apps/view/WindowHost.h"
#include "pavane/tables/observation/AFreqGroupsWnd.h"
#include "pavane/tables/observation/AObservationSelector.h"
#include "pavane/windows/controls/ASplitterWnd.h"
#include "pavane/windows/controls/ProgressJob.h"
#include "platform/tab_control.h"

#include <array>
#include <memory>
#include <string>

namespace pavane
{

/// The window of pavane-view for a file of visibilities: its tables with marks and its frequency
/// groups in tabs, beside them the plot of what is marked, below a status line. Groups that are not
/// saved are asked about.
class DataWindow : public CWnd, private UvPlotOwner, private PanelsOwner
{
public:
    explicit DataWindow(WindowHost* host = nullptr);
    ~DataWindow() override;

    /// Makes the window without showing it; a model of the options is drawn over the plot. Non-zero
    /// on success.
    int Create(const ViewOptions& options);
    /// Brings it to where it was last time, as far as that can be reached, and shows it.
    void Show();
    /// Opens a data file in place of the shown one, after asking about unsaved groups; a file of
    /// another kind gets another window. Non-zero when it is shown.
    int OpenFile(const std::string& file);
    /// 0 when the user wants to stay with the unsaved groups.
    int MayLeaveGroups();

    CTabCtrl& tabs() { return tabs_; }
    AObservationSelector& selector(UvTable table) { return *selectors_[indexOf(table)]; }
    AFreqGroupsWnd& groups() { return groups_; }
    /// The visibilities that were listed last.
    UvRowsTbl& list() { return list_; }
    UvPlotWindow& plot() { return plot_; }
    DataPlot shownPlot() const { return shownPlot_; }
    /// The panels that are shown; null while the plot is of distance.
    AChartWnd* panels() { return panels_.window(shownPlot_); }
    DataDocument* document() { return data_.get(); }
    const StatusLine& statusLine() const { return status_; }

    int PreTranslateMessage(const MSG& message) override;
    void OnInitMenuPopup(CMenu& popup) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnClose() override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;

private:
    static std::size_t indexOf(UvTable table) { return static_cast<std::size_t>(table); }
    // UvPlotOwner
    void plotStatus(const AxisStatus& status) override;
    void plotClicked(const AxisStatus& status) override;
    void plotBoxed(const UvRange& range) override;
    void plotSavePicture() override;

    // PanelsOwner
    void panelsStatus(const CString& text) override;
    void panelsRead() override;
    void panelsLeft(int step) override { goToPart(step); }

    int makeTabs();
    void layOut(int cx, int cy);
    void setMenu();
    void updateTitle();
    void showDocument();

    // Marks and the plot
    /// What a table shows has changed: its marks by the user (`byUser`), or its rows while it is
    /// filled.
    void tableChanged(UvTable table, int byUser);
    UvMarks marks();
    void plotAgain();
    void askTimes();
    int areTablesWhole() const;
    void readOn();
    void pointsRead(int all);
    void tellTrouble();

    // Panels of visibilities
    int runPanelCommand(unsigned id);
    void showPlot(DataPlot kind);
    void readPanels();
    void setPanels(int panels);
    void askTriangles();
    void askDirectionOfPlot();
    void showPoints(UvView view);
    void setDivision(UvColour colour, double seconds);
    void askMeansOfPlot();
    /// The window of what is plotted.
    APlotWnd& shownWindow();

    // Parts of the window
    CWnd* page();
    int focusPart();
    void goToPart(int step);
    void goToTab(int step);
    /// The table with the focus, or that of the shown tab.
    ATableWnd& activeTable();
    int isPlotActive();

    // Status line
    std::string readingText(double done);
    void showCounts();
    void showSums();

    // Commands
    int runFileCommand(unsigned id);
    int print(unsigned id);
    int runTableCommand(unsigned id);
    int runViewCommand(unsigned id);
    void stopReading();
    void goOnReading();
    void openCommand();
    void openRecent(std::size_t i);
    void openGroups();
    int saveGroups();
    int saveGroupsAs();
    int saveGroupsTo(const std::string& file);
    int mayWrite(const std::string& file);
    int isOffered(const CMenu::Line& line, CMenu& ofTable);

    WindowHost* host_;
    std::string modelFile_;
    AComponents model_;
    UvTimes times_;  ///< of the file that is opened first
    std::unique_ptr<DataDocument> data_;
    Relay<ASplitterWnd> splitter_;
    Relay<CTabCtrl> tabs_;
    std::array<std::unique_ptr<AObservationSelector>, uvTableCount> selectors_;
    AFreqGroupsWnd groups_;
    UvRowsTbl list_;
    UvPlotWindow plot_;
    DataPanels panels_;
    DataPlot shownPlot_ = DataPlot::uvdist;
    UvView pointView_;      ///< of the plot of single visibilities
    double direction_ = 0;  ///< that was asked for last, degrees
    PlotWish wish_;         ///< of the file that is opened first
    int panelsWait_ = 0;    ///< for the baselines of the file
    StatusLine status_;
    RecentFiles recent_;
    PrintCommands printing_;
    StatusTexts texts_;
    const ATableWnd* summedTable_ = nullptr;  ///< the selection that the status line tells of
    ASelectRect summed_;
    /// Tables of which all is marked, and stays so while they are filled.
    std::array<int, uvTableCount> all_{};
    std::array<int, uvTableCount> known_{};  ///< rows that the marks are of
    int settingMarks_ = 0;
    int told_ = 0;
    int tablesWhole_ = 0;                   ///< those that the plotted marks are of
    std::unique_ptr<ProgressJob> reading_;  ///< of the plot
    int readPieces_ = 0;                    ///< that it was told of last
    int drawLater_ = 0;  ///< the last points are to be drawn when the drag in the plot has ended
    int created_ = 0;
    std::int64_t lastDrawing_ = 0;
};

}  // namespace pavane

#pragma once

#include "apps/clean/CleanMap.h"
#include "apps/clean/CleanRow.h"
#include "apps/clean/CleanSession.h"
#include "apps/clean/GainWindows.h"
#include "apps/clean/PeakCurve.h"
#include "apps/clean/RoundTable.h"
#include "apps/clean/RunStrip.h"
#include "apps/clean/ShownMap.h"
#include "apps/view/AreaWindow.h"
#include "apps/view/PartWindow.h"
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/windows/AAreaTableWnd.h"
#include "pavane/dialogs/values/ASelfCalPM.h"
#include "pavane/tables/components/EditedComponents.h"
#include "pavane/tables/observation/AComponentsTbl.h"
#include "pavane/windows/controls/AInfoText.h"
#include "pavane/windows/controls/ASplitterWnd.h"
#include "platform/tab_control.h"

#include <functional>
#include <memory>
#include <string>

namespace pavane
{

/// The window of pavane-clean: the map with its areas, the rounds beside it, and the work on them.
class CleanWindow : public AreaWindow
{
public:
    CleanWindow();
    ~CleanWindow() override;

    /// Makes the window without showing it. Non-zero on success.
    int Create(const CleanOptions& options);
    void Show();
    /// Opens data or a study in place of what is open, after asking. Non-zero on success.
    int Open(const std::string& file);

    const char* GetWndClassName() override { return "PavaneClean"; }
    CleanSession& session() { return session_; }
    CleanMap& map() { return map_; }
    RoundTable& rounds() { return rounds_; }
    PeakCurve& curve() { return curve_; }
    ShownMap& shown() { return shown_; }
    AInfoText& log() { return log_; }
    int PreTranslateMessage(const MSG& message) override;

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnClose() override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnInitMenuPopup(CMenu& popup) override;

private:
    static constexpr unsigned blinkTimer = 1, areaTimer = 2;
    /// Milliseconds after the last change of areas until the study has them.
    static constexpr unsigned areaTime = 500;
    /// Tells when another component is chosen, or one is edited.
    class ComponentTable : public AComponentsTbl
    {
    public:
        std::function<void()> changed;
        void OnComponentsChanged() override { tell(); }
        void OnComponentSelected() override { tell(); }

    private:
        void tell()
        {
            if (changed)
                changed();
        }
    };
    int makePanes();
    void layOut(int cx, int cy);
    void connect();
    void updateTitle();
    int mayLeave();

    // Maps
    void roundsChanged();
    void showRound(int round);
    void chooseMap(MapKind kind);
    /// Shows the chosen map of the shown round, or the nearest that there is.
    void showMapFile();
    int showFile(const std::string& file, MapKind kind, const TMnMx& range = TMnMx());
    void stepMap(int step);
    void setBlink(int on);
    void blink();
    void refreshRow();
    void showComponents();
    void mapStatus(const AxisStatus& status);
    void useOwnRange();
    void showColours();
    void showDisplay();

    // Areas
    AreaPlace place() const override;
    void openAreaFile();
    void saveAreaFile();
    void takeAreas(const std::string& stored);

    // Work
    void clean();
    int roundAreas(std::string& stored, CString& notice);
    void stopRound();
    void jobEnded(int isDone, const CString& error);
    void jobTold(const RunNews& news);
    void jobBegan();
    int runFileCommand(unsigned id);
    int runCleanCommand(unsigned id);
    int runViewCommand(unsigned id);
    int runStudyCommand(unsigned id);
    void deleteBranch();
    void openModel();
    void makeEditedRound();
    void showLog();
    void showMarks();
    void storeAreasNow();
    void askParameters();
    void askSelection();
    void saveGains();
    void loadGains();
    void selfCalibrate();
    void changeChain(int removes);
    void showGains(GainWindows::Kind kind);
    void keepEditedGains();
    void exportShown();
    void goToPart(int step);
    void complain(const CString& error);

    CleanOptions options_;
    CleanSession session_;
    ShownMap shown_;
    MapKind wanted_ = MapKind::residual;  ///< chosen above the map
    MapKind before_ = MapKind::restored;  ///< and before that, for blinking
    int blinks_ = 0, blinkSide_ = 0;
    TMnMx blinkRange_;

    CleanRow row_;
    RunStrip strip_;
    ASplitterWnd split_, left_, right_;
    CleanMap map_;
    PeakCurve curve_;
    PartWindow<RoundTable> rounds_;
    CTabCtrl tabs_;
    AAreaTableWnd areaTable_;
    ComponentTable componentTable_;
    EditedComponents components_;
    AInfoText log_;
    std::unique_ptr<APalettePlayDlg> play_;
    std::unique_ptr<AMapDisplayDlg> display_;
    ASelfCalPM selfCal_;
    GainWindows gains_;
    std::string modelFile_;  ///< whose components are in the table
    std::string keptAreas_;  ///< as the study has them
    int created_ = 0;
    int isClosing_ = 0;
};

}  // namespace pavane

#pragma once

#include "apps/clean/ChainEdits.h"
#include "apps/clean/CleanMap.h"
#include "apps/clean/CleanRow.h"
#include "apps/clean/CleanSession.h"
#include "apps/clean/DataPlots.h"
#include "apps/clean/GainWindows.h"
#include "apps/clean/PeakCurve.h"
#include "apps/clean/RoundComponents.h"
#include "apps/clean/RoundPreview.h"
#include "apps/clean/RoundTable.h"
#include "apps/clean/RunStrip.h"
#include "apps/clean/ShownMap.h"
#include "apps/view/AreaWindow.h"
#include "apps/view/PartWindow.h"
#include "apps/view/print_commands.h"
#include "apps/view/recent_files.h"
#include "apps/view/Relay.h"
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/windows/AAreaTableWnd.h"
#include "pavane/dialogs/values/ASelfCalPM.h"
#include "pavane/tables/components/EditedComponents.h"
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
    DataPlots& plots() { return plots_; }
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
    static constexpr unsigned blinkTimer = 1, areaTimer = 2, previewTimer = 3;
    /// Milliseconds after the last change of areas until the study has them.
    static constexpr unsigned areaTime = 500;
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
    std::string fileToShow(int round, MapKind& kind) const;
    int showFile(const std::string& file, MapKind kind, const TMnMx& range = TMnMx());
    void stepMap(int step);
    int hasMap(MapKind kind) const;
    void setBlink(int on);
    void blink();
    int canBlink();
    std::string otherSide(int& round, MapKind& kind) const;
    void compareWith(int round);
    CString captionOf(int round, MapKind kind) const;
    void previewSoon();
    int beginPreview();
    void previewNow();
    void askBeamShape();
    void refreshRow();
    void showComponents(int isNeeded = 0);
    void mapStatus(const AxisStatus& status);
    void useOwnRange();
    void showColours();
    void showDisplay();

    // Areas
    AreaPlace place() const override;
    void openAreaFile();
    void saveAreaFile();
    void takeAreas(const std::string& stored, const char* label = "Areas of the round");
    int runAreaCommand(unsigned id);
    void areasOfRound();
    void askAreaSets();

    // Parts
    CWnd* part();
    ATableWnd* partTable();
    int runPartCommand(unsigned id);
    void showPartCommands(CMenu& popup);
    void goToPart(int step);
    int storeEditors();
    std::string shownTitle();
    int print(unsigned id);
    void savePicture();
    int mayWrite(const std::string& file);
    void setMenu();
    void openRecent(std::size_t i);

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
    void makePoint();
    void makeEditedRound();
    void showLog();
    void showMarks();
    int marksShow();
    int mayDropEdits();
    void storeAreasNow();
    void askParameters();
    void takeSettledParameters();
    void askSelection();
    int mayImport();
    int importsWithout(const CString& error);
    void saveGains();
    void loadGains();
    int selfCalibrate(int replaces = 0);
    void askChain();
    int takeChain();
    int copyGains(CWnd& dialog, ChainEdits& edits);
    void tellOfChain();
    void changeChain(int removes);
    void showGains(GainWindows::Kind kind);
    void keepEditedGains();
    void exportShown();
    void complain(const CString& error);

    CleanOptions options_;
    CleanSession session_;
    ShownMap shown_;
    MapKind wanted_ = MapKind::residual;  ///< chosen above the map
    MapKind before_ = MapKind::restored;  ///< and before that, for blinking
    int blinks_ = 0, blinkSide_ = 0;
    int compared_ = -1;  ///< the round that B compares others with
    TMnMx blinkRange_;
    std::unique_ptr<RoundPreview> preview_;  ///< while it is looked through

    CleanRow row_;
    RunStrip strip_;
    ASplitterWnd split_, left_;
    Relay<ASplitterWnd> right_{*this};  ///< tells which tab is in front
    CleanMap map_;
    PeakCurve curve_;
    PartWindow<RoundTable> rounds_;
    CTabCtrl tabs_;
    PartWindow<AAreaTableWnd> areaTable_;
    RoundComponents componentTable_;
    EditedComponents components_;
    AInfoText log_;
    std::unique_ptr<APalettePlayDlg> play_;
    std::unique_ptr<AMapDisplayDlg> display_;
    ASelfCalPM selfCal_;
    GainWindows gains_;
    RecentFiles recent_{"pavane-clean"};
    PrintCommands printing_;
    int tabBefore_ = -1;  ///< in front before a job showed the log; -1: the user's choice stays
    CWnd* part_ = &map_;  ///< that had the keyboard last
    ChainEdits chain_;    ///< with its steps of undo
    int shownLink_ = 0;   ///< id of the link whose gains the windows show; 0: the last one
    DataPlots plots_{session_};
    std::string modelFile_;  ///< whose components are in the table
    int modelRound_ = -1;    ///< that has it
    std::string keptAreas_;  ///< as the study has them
    int created_ = 0;
    int isClosing_ = 0;
};

}  // namespace pavane

#pragma once

#include "apps/view/AreaNumbersPanel.h"
#include "apps/view/AreaSession.h"
#include "apps/view/AreaWindow.h"
#include "apps/view/CubeCells.h"
#include "apps/view/DirtyBeamFile.h"
#include "apps/view/MapDocument.h"
#include "apps/view/MapWindow.h"
#include "apps/view/ModelPanel.h"
#include "apps/view/options.h"
#include "apps/view/part_menu.h"
#include "apps/view/PartWindow.h"
#include "apps/view/PlaneBar.h"
#include "apps/view/print_commands.h"
#include "apps/view/profiles/CurvePanel.h"
#include "apps/view/recent_files.h"
#include "apps/view/several/MapLinks.h"
#include "apps/view/several/MapList.h"
#include "apps/view/several/MapSeat.h"
#include "apps/view/several/MapStage.h"
#include "apps/view/SurfacePanel.h"
#include "apps/view/WindowHost.h"
#include "apps/view/work/WorkCopy.h"
#include "pavane/axes/dialogs/ABeamDlg.h"
#include "pavane/axes/dialogs/ABeamWnd.h"
#include "pavane/axes/dialogs/AMapDisplayDlg.h"
#include "pavane/axes/dialogs/APalettePlayDlg.h"
#include "pavane/axes/windows/AAreaTableWnd.h"
#include "pavane/measures/fits/GaussianFit.h"
#include "pavane/measures/maps/pair_maps.h"
#include "pavane/windows/controls/AColorMenu.h"
#include "pavane/windows/controls/AImageList.h"
#include "pavane/windows/controls/ASplitterWnd.h"
#include "platform/CMenu.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pavane
{

struct RgbChoice;

/// The window of pavane-view: menu, toolbar, list of areas, the map, the table of components beside
/// it, the numbers of the current area, and a status line. Commands of editing act on the part that
/// has the keyboard. Nothing that took work is lost without a question.
class MainWindow : public AreaWindow,
                   private MapWindowOwner,
                   private ModelPanelOwner,
                   private PlaneBarOwner
{
public:
    /// Without a host it opens maps only, and the program ends with it.
    explicit MainWindow(WindowHost* host = nullptr);
    ~MainWindow() override;

    /// Makes the window without showing it. `options` are those of the command line. Non-zero on
    /// success.
    int Create(const ViewOptions& options);
    /// Brings it to where it was last time, as far as that can be reached, and shows it; then
    /// offers the areas of a session with the map that ended without saving.
    void Show();

    /// Opens a map in place of the shown one, after asking about unsaved areas; offers the areas of
    /// a session that ended without saving. Non-zero when the map is shown.
    int OpenMap(const std::string& file, int plane);
    /// Opens another map in this window, beside those that it has; one that it has already becomes
    /// the current one. Non-zero when the map is shown.
    int AddMap(const std::string& file, int plane);
    /// Makes one of the maps, from 0, the current one, whose areas, numbers and colours the window
    /// is about. 0 when it cannot leave the one before, or there is none of that number.
    int ChooseMap(int map);
    /// Writes all that the window shows as a work file; 0, after telling why, when it cannot.
    int SaveWork(const std::string& file);
    /// Opens the maps of a work file here, or in another window when this one has maps. Non-zero
    /// when one is shown.
    int OpenWork(const std::string& file);
    /// Brings back what a session left that ended without closing its window; that copy goes when
    /// this window has its own. Non-zero when a map is shown.
    int RestoreWork(const LeftWork& left);
    /// Goes to a position, degrees in ICRS; "" or why not.
    std::string GoToSky(double ra, double dec);
    /// Writes the areas of the current map as regions into a file; "" or why not. `facts`: the
    /// URL of the map and how many areas.
    std::string WriteRegions(const std::string& file,
                             std::vector<std::pair<std::string, std::string>>& facts);
    /// A line for the user.
    void Tell(const CString& text) { status_.SetMessage(text); }
    /// Reads the current map again from its file; view, colours, areas and links stay. 0, after
    /// telling why, when it cannot be read.
    int ReadAgain();
    /// Brings the copy of what the window shows up to date, as it does itself while it is used.
    void KeepWork();
    /// The current map goes, after asking about unsaved areas; not the last one.
    int CloseMap();
    const MapList& maps() const { return maps_; }
    const MapLinks& links() const { return links_; }
    /// The window of a map, from 0.
    MapWindow& viewOf(int map) { return seats_[static_cast<std::size_t>(map)]->window; }
    MapStage& stage() { return stage_; }
    /// The map and the areas that the program is started with, before the window shows.
    int OpenFirst(const ViewOptions& options);
    /// Reads an area file and shows it in place of the areas when the user agrees; without a map
    /// the user is asked for the one that they lie on.
    int OpenAreas(const std::string& file);
    /// 0 when the user wants to stay with the unsaved areas.
    int MayLeaveAreas();
    /// The same of areas and components.
    int MayLeave() { return MayLeaveAreas() && model_.MayLeave(); }
    int MayLeaveAll();

    const char* GetWndClassName() override { return "PavaneView"; }
    /// The window of the current map; an empty one without maps.
    MapWindow& view()
    {
        return seats_[static_cast<std::size_t>(std::max(0, maps_.current()))]->window;
    }
    AAreaTableWnd& numbers() { return table_; }
    ModelPanel& model() { return model_; }
    /// The list of marks that are shown; "" for none.
    const std::string& marksFile() const { return marksFile_; }
    AreaNumbersPanel& areaNumbers() { return areaNumbers_; }
    SurfacePanel& surface() { return surface_; }
    CurvePanel& curves() { return curves_; }
    const AreaSession& session() const { return session_; }
    PlaneBar& planeBar() { return planes_; }
    /// The map that is open, if any, and those that will be are displayed in this style.
    void TakeStyle(const MapDisplay& display);
    /// The palette of the program is another one, for all maps or as it was before that.
    void PaletteChanged(int isForAll);
    /// Shows that plane of the cube as one step of the views; 0 when it cannot be shown.
    int planeWanted(int plane) override;
    int PreTranslateMessage(const MSG& message) override
    {
        return planes_.TakeTab(message) || AreaWindow::PreTranslateMessage(message);
    }

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnClose() override;
    void OnDestroy() override;
    void OnTimer(unsigned id) override;
    void OnSetFocus(CWnd* old) override;
    void OnSysColorChange() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    LRESULT WindowProc(unsigned message, WPARAM wParam, LPARAM lParam) override;
    void OnInitMenuPopup(CMenu& popup) override;

private:
    // MapWindowOwner
    void mapStatus(MapWindow& from, const AxisStatus& status) override;
    void mapAreasChanged(MapWindow& from) override;
    void mapNotice(const CString& text) override { status_.SetMessage(text); }
    void mapSavePicture() override { savePicture(); }
    void mapFocused(MapWindow& from) override;
    void mapPointed(MapWindow& from, int isThere) override;
    void mapRangeChanged(MapWindow& from) override;
    void mapAsksForColours() override { showColours(); }
    void mapColoursChanged(MapWindow& from) override;
    void mapAreaChanging() override
    {
        areaNumbers_.AreasChanging();
        curves_.AreasChanged(1);
        followDrag();
    }
    int mapStepPlane(int step) override;

    // PlaneBarOwner
    void planeBarLeft() override;

    // ModelPanelOwner
    void modelChanged() override;
    void modelSelected(int before, int now) override;
    void modelOpened() override;
    void modelNotice(const CString& text) override { status_.SetMessage(text); }
    int modelMayWrite(const std::string& file) override { return mayWrite(file, 0); }
    CWnd* modelWindow() override { return this; }

    // Parts
    ATableWnd* tableOf(Part part);
    Part part();
    void goToPart(int step);
    int runPartCommand(unsigned id);
    void showPartCommands(CMenu& popup);
    int runModelCommand(unsigned id);

    // Names, colours and numbers of areas
    int runAreaCommand(unsigned id);
    void showAreaCommands(CMenu& popup);
    void toggleAreaNumbers();
    void askAreaName();
    void askAreaColour();
    std::vector<int> labelledAreas();

    void layOut(int cx, int cy);
    void setMenu();
    void giveIcons(CMenu& menu);
    void updateTitle();
    AreaPlace place() const override;
    int isModified();

    // File
    int runFileCommand(unsigned id);
    void openDropped(const std::vector<CString>& files, int intoThis);
    void openMapCommand();
    void openRecent(std::size_t i);
    void openAreasCommand();
    int saveAreasCommand();
    int saveAreasAs();
    int saveAreasTo(const std::string& file);
    /// 0, and said, when writing the file would replace one that is open; areas may go back to
    /// where they came from.
    int mayWrite(const std::string& file, int asAreas);
    void saveMask();
    void savePicture();
    int print(unsigned id);
    /// Takes over what was read; `file` may be saved to from now on unless it was not read whole.
    void replaceAreas(const ARPTrackerArray& read, const std::string& file, int whole);
    void offerLeftovers();
    int agreesToReplace(const std::string& file, const AreaNotes& notes);

    // Edit and view
    int runViewCommand(unsigned id);
    void setPalette(std::size_t i);
    void setScale(MapScaleKind scale);
    void showColours();
    void showDisplaySheet();
    void showBeam();
    void showDirtyBeam();
    void useForAll(const MapDisplay& display);
    void displayChanged();
    void followDisplay();
    void giveStyle(MapPicture& picture) const;
    double arcseconds() const;
    DirtyBeamFinder beamFinder();
    void closeMapDialogs();
    void levelsChanged();
    void loadLook();
    void storeLook() const;
    void toggleContours();
    void changeLevels();
    void toggleTable();
    void toggleSurface();
    int runSurfaceCommand(unsigned id);
    int runSkyCommand(unsigned id);
    void showSkyCommands(CMenu& popup);
    SkyFrame gridFrame() const;
    int runWorkCommand(unsigned id);
    Work workNow(int asCopy = 0);
    std::string foundFile(const std::string& file, const char* what);
    void showWorkMap(const WorkMap& map);
    void showWorkContours(const WorkMap& map);
    void showWorkCurves(const Work& work);
    int showWork(const Work& work, const std::string& name);
    int bringAreasBack(const std::string& copy);
    void watchMap();
    int runMarkCommand(unsigned id);
    void showMarkCommands(CMenu& popup);
    int openMarks(const std::string& file);
    void placeMarks();
    void placeMarks(MapWindow& window, const MapDocument& document) const;
    void goToPosition();
    int goTo(const SkyPosition& position, std::string& text);
    int pointedPosition(const SkyFrame& frame, SkyPosition& position) const;
    int runSampCommand(unsigned id);
    void showSampCommands(CMenu& popup);
    void copyPosition();
    void showHeader();
    double cellDegrees() const;
    void showSurfaceCommands(CMenu& popup);
    APlotWnd& shownPicture();
    std::unique_ptr<SideMap> askMap(const CString& title);

    // Several maps
    int runSeveralCommand(unsigned id);
    void showSeveralCommands(CMenu& popup);
    int seatOf(const MapWindow& window) const;
    MapDocument* documentOf(int map);
    AreaSession& sessionOf(int map);
    int isCurrent(const MapWindow& window) { return &window == &view(); }
    std::unique_ptr<MapDocument> readMap(const std::string& file, int plane);
    void seatMap(MapWindow& window, MapDocument& document);
    void currentMapIsOther();
    void leaveCurrentMap();
    void showMaps();
    void addMapCommand();
    void toggleOtherContours();
    void showWay(MapsShown shown);
    void setLinkBy(LinkBy by);
    void tellLinks();
    void linksChanged();
    LinkBy linkOf(int a, int b);
    void followRange(int leader);
    void followPointer(int leader, const AxisStatus& status);
    void followColours(int leader);
    void followAreas(int leader);
    int mayReplaceAreas(int leader);
    void giveLinkedAreas(int map, const std::vector<AreaShape>& shapes);
    void followDrag();
    void endFollowing();
    void makePair(MapPair pair);
    void proposeRgb(RgbChoice& choice);
    void askRgbRanges();
    void makeRgb();
    static SkyShift shiftAgainst(const MapDocument& map, const MapDocument& first);
    void findShift();
    void moveSecond(SkyShift shift);
    void resetShifts();
    void mapMoved();
    int isAnyMoved();
    std::string movedText();
    // Maps made of the current one
    int runMakeCommand(unsigned id);
    void showMakeCommands(CMenu& popup);
    void makeMoment();
    void makeSmooth();
    void makePolarisation();
    void makeVelocity();
    void toggleVectors();
    int askMadeName(CWnd& dialog, const CString& ending, const CString& title, ViewOptions& wish,
                    int hasErrors);
    int makeOfMap(CWnd& dialog, const ViewOptions& wish, CString& error);
    void showMade(const ViewOptions& wish);
    void prepareLater();
    void prepareMaps();
    void toggleBlink();
    void setBlinkPace(int step);
    void blink();
    void endBlink();
    // What is measured
    int runMeasureCommand(unsigned id);
    void showMeasureCommands(CMenu& popup);
    int runLineCommand(unsigned id);
    void showLineCommands(CMenu& popup);
    void showCurves(CurvePanel::Kind kind);
    void askProfileLine();
    void saveCurve();
    void fitGaussiansCommand();
    void addComponents(const GaussianFit& fit);
    void saveResidualCommand();

    // Planes of a cube
    int isCube() const;
    void setUpPlanes();
    void tellPlane();
    int showPlane(int plane);
    void fetchPlane();
    int runPlaneCommand(unsigned id);

    // Copies of unsaved areas
    void writeCopy();
    static constexpr unsigned copyTimer = 1, blinkTimer = 2, prepareTimer = 3, workTimer = 4,
                              dragTimer = 5, fetchTimer = 6;
    static constexpr unsigned fetchPause = 5;   ///< ms, in which the plane is painted
    static constexpr unsigned workPace = 2000;  // ms
    static constexpr unsigned preparePause = 60, dragPause = 150;  // ms
    void writeCopyOf(ATrackerArrayInAxis& areas, AreaSession& session);
    static std::int64_t now();

    WindowHost* host_;
    ViewOptions options_;
    ViewOptions asked_;         ///< on the command line
    std::string askedPalette_;  ///< the name of its palette
    LevelChoice shownLevels_;   ///< kept while contours are off
    std::unique_ptr<MapDocument> map_;
    // The map window goes first: it asks the others while it lives.
    PartWindow<AAreaTableWnd> table_;
    AreaNumbersPanel areaNumbers_;
    ModelPanel model_;
    CurvePanel curves_;
    ASplitterWnd surfaceSplit_;  ///< between map, with its components, and surface
    ASplitterWnd split_;
    PlaneBar planes_;
    MapStage stage_;
    MapList maps_;
    MapLinks links_;
    std::vector<std::unique_ptr<MapSeat>> seats_;  ///< by number; one without a map at first
    std::vector<SkyMark> skyMarks_;
    std::string marksFile_;  ///< "" without marks
    std::string workFile_;   ///< that was saved or opened last; "" for none
    SurfacePanel surface_;
    Part part_ = Part::map;  ///< that had the keyboard last
    AreaSession session_;
    WorkCopy workCopy_;
    FileState changing_;  ///< of the map, whose file is another one now
    int isChangeTold_ = 0, isAsking_ = 0;
    int isWorkShown_ = 0;  ///< a work file is being shown: not all of it is there yet
    int isModelOld_ = 0;   ///< the copy of the components is not up to date
    RecentFiles recent_;
    PrintCommands printing_;
    std::vector<CString> palettes_;
    AColorMenu paletteMenu_;                ///< their strips
    AImageList icons_;                      ///< of lines of the menu that are buttons too
    std::unique_ptr<CubeCells> cubeCells_;  ///< for the dialog
    std::unique_ptr<APalettePlayDlg> play_;
    std::unique_ptr<AMapDisplayDlg> display_;
    std::unique_ptr<ABeamDlg> beam_;
    DirtyBeamFile dirtyBeam_;
    std::unique_ptr<ABeamWnd> beamNumbers_;  ///< of that
    std::optional<MapDisplay> styleOfAll_;   ///< of maps that are opened; none: as the options say
    std::vector<COLORREF> colours_;          ///< of the map; none for the palette of the program
    std::vector<COLORREF> leftColours_;      ///< before a palette was used for all maps
    std::vector<std::string> agreedLosses_;
    AxisStatus pointed_;  ///< the place in the plot that was pointed at last
    double blinkSeconds_ = firstBlinkSeconds;
    int blinking_ = 0;
    int pointedMap_ = -1;    ///< that the pointer is over
    int isLed_ = 0;          ///< a linked map leads the others
    int choosing_ = 0;       ///< another map becomes the current one
    int modelMap_ = 0;       ///< on which the components lie
    GaussianFit fitted_;     ///< to this map, last
    AreaCells fittedCells_;  ///< where
    CString fitText_ = "1";  ///< what was asked for last
    CString madeNote_;       ///< of the map that was made last
    int skyRegions_ = 0;
    int copyFailed_ = 0;
    int showTable_ = 0;
    int readingPlane_ = 0;
    int created_ = 0;
    int isClosed_ = 0;  ///< on purpose: it leaves no copies
};

}  // namespace pavane

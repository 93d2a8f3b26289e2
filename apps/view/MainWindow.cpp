#include "apps/view/MainWindow.h"

#include "apps/view/area_pointer.h"
#include "apps/view/main_menu.h"
#include "apps/view/view_dialogs.h"
#include "apps/view/window_start.h"
#include "pavane/axes/windows/show_map.h"
#include "pavane/images/palette_choice.h"
#include "pavane/images/palettes.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/trackers/regions/area_kind.h"
#include "pavane/windows/window_placement.h"
#include "platform/drop_files.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"

#include <algorithm>
#include <chrono>

namespace pavane
{

namespace
{

constexpr const char* section = "pavane-view";
constexpr CRect firstPlace(80, 60, 1180, 900);
constexpr unsigned idView = 101, idStatus = 102, idBar = 103, idTable = 104, idSplit = 105,
                   idModelTable = 106, idPlanes = 107, idSurfaceSplit = 108, idSurfaceView = 109,
                   idAreaTable = 110;
constexpr int tableWidth = 320;
/// Of the numbers of areas below the map, which leave it two thirds at least.
constexpr int numbersHeight = 190;
/// Of the map beside the components.
constexpr double mapShare = 0.6;
constexpr unsigned copyTimer = 1;

}  // namespace

MainWindow::MainWindow(WindowHost* host)
    : host_(host), model_(*this), planes_(*this), view_(*this), surface_(view_),
      session_(folderOf(GetProfileFile())), recent_(section)
{
}

MainWindow::~MainWindow() { DestroyWindow(); }

int MainWindow::Create(const ViewOptions& options)
{
    options_ = asked_ = options;
    askedPalette_ = paletteNameOf({});
    shownLevels_ = options.levels.none ? LevelChoice() : options.levels;
    loadLook();
    recent_.load();
    return CWnd::Create(GetWndClassName(), "pavane-view", WS_OVERLAPPEDWINDOW, firstPlace, nullptr,
                        0);
}

int MainWindow::OnCreate(CREATESTRUCT& cs)
{
    if (AreaWindow::OnCreate(cs) < 0 || !makeBar(idBar))
        return -1;
    if (!surfaceSplit_.Create(CSplitterWnd::Split::columns, WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                              CRect(), this, idSurfaceSplit) ||
        !split_.Create(CSplitterWnd::Split::columns, WS_CHILD | WS_VISIBLE | WS_TABSTOP, CRect(),
                       &surfaceSplit_, idSplit) ||
        !surface_.Create(&surfaceSplit_, idSurfaceView) ||
        !view_.Create(view_.GetWndClassName(), CString(), WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                      CRect(), &split_, idView) ||
        !model_.Create(&split_, idModelTable) ||
        !table_.Create(table_.GetWndClassName(), CString(),
                       WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), this, idTable) ||
        !areaNumbers_.Create(areaNumbers_.GetWndClassName(), CString(),
                             WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), this,
                             idAreaTable) ||
        !planes_.Create(this, idPlanes) || !status_.Create(this, idStatus))
        return -1;
    table_.SetAxisWnd(&view_);
    table_.focused = [this] { part_ = Part::numbers; };
    areaNumbers_.SetAxisWnd(&view_);
    areaNumbers_.focused = [this] { part_ = Part::areaNumbers; };
    areaNumbers_.left = [this] { view_.SetFocus(); };
    areaNumbers_.notice = [this](const CString& text) { status_.SetMessage(text); };
    model_.table().focused = [this] { part_ = Part::model; };
    model_.table().left = [this] { view_.SetFocus(); };
    view_.SetMarks(&model_);
    view_.SetPlayByMouse(1);
    split_.SetPanes(&view_, &model_.table());
    split_.SetName("Map and components");
    split_.SetShare(mapShare);
    (void)split_.SetProfile(section, "ComponentsShare");
    split_.ShowOnly(0);
    surfaceSplit_.SetPanes(&split_, &surface_.window());
    surfaceSplit_.SetName("Map and surface");
    (void)surfaceSplit_.SetProfile(section, "SurfaceShare");
    surfaceSplit_.ShowOnly(0);
    surface_.status = [this](const AxisStatus& status) { mapStatus(status); };
    surface_.focused = [this] { part_ = Part::surface; };
    surface_.levels = [this] { return options_.levels; };
    surface_.stepPlane = [this](int step) { return mapStepPlane(step); };
    useMap(view_);
    planes_.ExplainBy(tips_);
    setMenu();
    DragAcceptFiles(*this);
    created_ = 1;
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    updateTitle();
    return 0;
}

void MainWindow::Show()
{
    showPlaced(*this, section, firstPlace);
    if (!map_)
        status_.SetMessage("No map is open: Ctrl+O opens one");
    view_.SetFocus();
    if (map_)
        offerLeftovers();
}

void MainWindow::OnSize(unsigned type, int cx, int cy)
{
    AreaWindow::OnSize(type, cx, cy);
    if (created_)
        layOut(cx, cy);
}

void MainWindow::layOut(int cx, int cy)
{
    const int foot = std::max(0, cy - StatusLine::height());
    const int head = std::min(foot, bar_.GetBarHeight(cx));
    bar_.MoveWindow(CRect(0, 0, cx, head));
    const int right = showTable_ ? cx - std::min(tableWidth, cx / 2) : cx;
    const int numbers =
        areaNumbers_.isShown() ? foot - std::min(numbersHeight, (foot - head) / 3) : foot;
    const int planes = isCube() ? std::max(head, numbers - PlaneBar::height()) : numbers;
    surfaceSplit_.MoveWindow(CRect(0, head, right, planes));
    planes_.MoveWindow(CRect(0, planes, right, numbers));
    areaNumbers_.MoveWindow(CRect(0, numbers, right, foot));
    table_.MoveWindow(CRect(right, head, cx, foot));
    status_.MoveWindow(CRect(0, foot, cx, cy));
}

void MainWindow::OnSetFocus(CWnd*) { view_.SetFocus(); }

void MainWindow::setMenu()
{
    CMenu menu;
    menu.LoadMenu(mainMenu);
    recent_.putInto(menu);
    if (palettes_.empty()) {
        const AObjArray<CString> names = PaletteNames();
        AArray<COLORREF> colours;
        for (int i = 0; i < names.count(); ++i) {
            palettes_.push_back(names(i));
            const int isRead = GetPaletteColors(names(i), colours);
            const COLORREF* const first = colours.lpArray();
            paletteMenu_.Add({names(i), isRead ? std::vector(first, first + colours.count())
                                               : std::vector<COLORREF>()});
        }
    }
    if (CMenu* const palettes = popupOf(menu, idPalette); palettes && !palettes_.empty()) {
        palettes->DeleteAll();
        (void)paletteMenu_.AppendTo(*palettes, idPalette);
    }
    giveIcons(menu);
    SetMenu(menu);
}

/// Lines that are buttons of the toolbar too are known by the same picture.
void MainWindow::giveIcons(CMenu& menu)
{
    constexpr int side = std::ssize(undoIcon);
    if (icons_.GetImageCount() == 0 && icons_.Create(side, side)) {
        icons_.FollowDesktop();
        for (const PlotCommand& command : plotCommands)
            if (command.icon)
                (void)icons_.AddNamed(command.text, command.icon, side);
    }
    constexpr struct {
        unsigned line, button;
    } lines[] = {{ID_TRACK_UNDO, ID_TRACK_UNDO}, {ID_TRACK_REDO, ID_TRACK_REDO},
                 {ID_TRACK_COPY, ID_TRACK_COPY}, {idDelete, ID_TRACK_DELETE},
                 {idZoomIn, ID_ZOOM_PLUS},       {ID_ZOOM_MINUS, ID_ZOOM_MINUS},
                 {ID_WHOLE_MAP, ID_WHOLE_MAP}};
    for (const auto& each : lines)
        (void)menu.SetItemImage(each.line, MF_BYCOMMAND, icons_,
                                icons_.Find(commandOf(each.button)->text));
}

void MainWindow::OnSysColorChange()
{
    AreaWindow::OnSysColorChange();
    if (icons_.GetImageCount() > 0)
        icons_.FollowDesktop();
}

AreaPlace MainWindow::place() const
{
    AreaPlace place = map_ ? map_->place() : AreaPlace();
    place.skyRegions = skyRegions_;
    return place;
}

int MainWindow::OpenMap(const std::string& file, int plane)
{
    if (host_ && holdsVisibilities(file))
        return host_->openWindow(file);
    if (!MayLeave())
        return 0;
    auto opened = std::make_unique<MapDocument>();
    std::string error;
    // a cube begins with its first plane
    if (!opened->open(this, file, std::max(0, plane), options_, error)) {
        if (!error.empty())
            AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    // the next map has its own range, whatever was asked for this one
    options_.hasRange = 0;
    options_.play = {};
    const int hasColours = play_ && play_->GetSafeHwnd();
    closeMapDialogs();
    dirtyBeam_.forget();
    giveStyle(opened->picture());
    auto* const areas = new ATrackerArrayInAxis;
    setUpPointer(*areas);
    session_.begin(file);
    agreedLosses_.clear();
    model_.Close();
    view_.SetTrackers(areas, 1);
    showMap(view_, opened->picture());
    view_.SetSquareCells(!options_.freeAspect);
    bar_.SetOwnerWnd(this, 1);
    view_.ChooseTool(toolArrow);  // as the new areas have it, whatever the last ones had
    map_.swap(opened);            // the old one goes when nothing shows it any more
    areaNumbers_.SetMap(map_.get());
    followDisplay();
    if (surface_.isShown())
        surface_.Show(map_.get());
    model_.SetFrame(&map_->inputs().frame);
    status_.Reset();
    setUpPlanes();
    table_.SetUnits(map_->format().offsetUnit(), map_->format().offsetUnit());
    table_.Refresh();
    recent_.load();  // other windows add to it
    recent_.add(file);
    setMenu();
    updateTitle();
    if (hasColours)
        showColours();
    if (IsWindowVisible())
        offerLeftovers();
    return 1;
}

int MainWindow::OpenFirst(const ViewOptions& options)
{
    if (!options.map.empty() && isAreaFile(options.map))
        return OpenAreas(options.map);
    if (options.map.empty() || !OpenMap(options.map, options.plane))
        return 0;
    if (!options.areas.empty() && OpenAreas(options.areas)) {
        areas().history().clear();  // what the session starts with is no edit
        view_.FollowAreas();
    }
    if (!options.model.empty())
        (void)model_.Open(options.model);
    return 1;
}

int MainWindow::MayLeaveAreas()
{
    if (CWnd::GetCapture())
        ReleaseCapture();  // what a drag has half done is no work of the user
    if (!table_.storeEditor())
        return 0;
    if (!isModified())
        return 1;
    const int answer = AfxMessageBox("The areas on " + baseNameOf(session_.map()) +
                                         " are not saved. Save them now?",
                                     MB_YESNOCANCEL | MB_ICONQUESTION);
    return answer == IDNO || (answer == IDYES && saveAreasCommand());
}

int MainWindow::isModified()
{
    return map_ && (areas().IsModified() || !areas().KeptState(-1).empty());
}

void MainWindow::OnClose()
{
    if (!MayLeave())
        return;
    SaveWndPos(this, section);
    storeLook();
    session_.end();
    DestroyWindow();
}

void MainWindow::OnDestroy()
{
    // without OnClose before it the session ends in disorder: leave a copy to come back to
    writeCopy();
    closeMapDialogs();
    created_ = 0;
    if (host_)
        host_->windowClosed(*this);
    else
        PostQuitMessage(0);
}

void MainWindow::OnTimer(unsigned id)
{
    if (id != copyTimer) {
        AreaWindow::OnTimer(id);
        return;
    }
    KillTimer(copyTimer);
    writeCopy();
}

std::int64_t MainWindow::now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void MainWindow::mapStatus(const AxisStatus& status)
{
    if (status.inPlot)
        pointed_ = status;
    if (map_ && !view_.IsPlaying())  // the play tells of itself
        status_.SetTexts(map_->format().texts(status, map_->sky()));
}

void MainWindow::mapAreasChanged()
{
    if (!map_ || !created_)
        return;
    if (showTable_)
        table_.Refresh();
    surface_.SetAreas(areas());
    areaNumbers_.AreasChanged();
    const std::int64_t wait = session_.changed(areas().IsModified(), now());
    updateTitle();
    if (wait > 0)
        SetTimer(copyTimer, static_cast<unsigned>(wait));
    else
        writeCopy();
}

void MainWindow::writeCopy()
{
    if (!map_)
        return;
    std::vector<AreaLabel> labels = labelsOf(areas());
    if (!areas().KeptState(-1).empty())
        labels.emplace_back();  // of the open polygon
    if (session_.writeCopy([this](AFile& file) { return storeAllAreas(areas(), file); }, now(),
                           labels) ||
        copyFailed_)
        return;
    copyFailed_ = 1;  // said once; the next change tries again
    status_.SetMessage("The copy of the unsaved areas cannot be written: " +
                       session_.autosave().file());
}

void MainWindow::updateTitle() { SetWindowText(session_.title(model_.session().isModified())); }

}  // namespace pavane

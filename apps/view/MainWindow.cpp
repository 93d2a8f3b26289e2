#include "apps/view/MainWindow.h"

#include "apps/view/area_pointer.h"
#include "apps/view/main_menu.h"
#include "apps/view/rgb_maps.h"
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
constexpr unsigned idStatus = 102, idBar = 103, idTable = 104, idSplit = 105, idModelTable = 106,
                   idPlanes = 107, idSurfaceSplit = 108, idSurfaceView = 109, idAreaTable = 110,
                   idStage = 111, idCurves = 112;
constexpr int tableWidth = 320;
/// Of the numbers of areas below the map, which leave it two thirds at least.
constexpr int numbersHeight = 190;
/// Of a curve below the map, which leaves it half at least.
constexpr int curvesHeight = 260;
/// Of the map beside the components.
constexpr double mapShare = 0.6;

}  // namespace

MainWindow::MainWindow(WindowHost* host)
    : host_(host), model_(*this), planes_(*this), session_(folderOf(GetProfileFile())),
      workCopy_(session_.folder()), recent_(section)
{
    seats_.push_back(
        std::make_unique<MapSeat>(static_cast<MapWindowOwner&>(*this), session_.folder()));
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
        !surface_.Create(&surfaceSplit_, idSurfaceView) || !stage_.Create(&split_, idStage) ||
        !stage_.Add(view()) || !model_.Create(&split_, idModelTable) ||
        !table_.Create(table_.GetWndClassName(), CString(),
                       WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), this, idTable) ||
        !areaNumbers_.Create(areaNumbers_.GetWndClassName(), CString(),
                             WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), this,
                             idAreaTable) ||
        !curves_.Create(curves_.GetWndClassName(), CString(), WS_CHILD | WS_TABSTOP, CRect(), this,
                        idCurves) ||
        !planes_.Create(this, idPlanes) || !status_.Create(this, idStatus))
        return -1;
    stage_.ShowMaps(maps_);
    stage_.chosen = [this](int map) { (void)ChooseMap(map); };
    stage_.resized = [this] {
        for (const auto& seat : seats_)
            seat->window.SetLeastRoom({});
        prepareLater();
    };
    table_.SetAxisWnd(&view());
    surface_.SetAxisWnd(&view());
    table_.focused = [this] { part_ = Part::numbers; };
    areaNumbers_.SetAxisWnd(&view());
    areaNumbers_.focused = [this] { part_ = Part::areaNumbers; };
    areaNumbers_.left = [this] { view().SetFocus(); };
    areaNumbers_.notice = [this](const CString& text) { status_.SetMessage(text); };
    curves_.SetMapWindow(&view());
    curves_.focused = [this] { part_ = Part::curves; };
    curves_.left = [this] { view().SetFocus(); };
    curves_.notice = [this](const CString& text) { status_.SetMessage(text); };
    curves_.savesPicture = [this] { savePicture(); };
    model_.table().focused = [this] { part_ = Part::model; };
    model_.table().left = [this] { view().SetFocus(); };
    view().SetMarks(&model_);
    split_.SetPanes(&stage_, &model_.table());
    split_.SetName("Map and components");
    split_.SetShare(mapShare);
    (void)split_.SetProfile(section, "ComponentsShare");
    split_.ShowOnly(0);
    surfaceSplit_.SetPanes(&split_, &surface_.window());
    surfaceSplit_.SetName("Map and surface");
    (void)surfaceSplit_.SetProfile(section, "SurfaceShare");
    surfaceSplit_.ShowOnly(0);
    surface_.status = [this](const AxisStatus& status) { mapStatus(view(), status); };
    surface_.focused = [this] { part_ = Part::surface; };
    surface_.levels = [this] { return options_.levels; };
    surface_.stepPlane = [this](int step) { return mapStepPlane(step); };
    useMap(view());
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
    view().SetFocus();
    const int first = maps_.current();
    for (int i = 0; i < maps_.count(); ++i)
        // areas that came back already have a copy of their own
        if (!sessionOf(i).hasCopy() && !sessionOf(i).autosave().leftovers().empty() && ChooseMap(i))
            offerLeftovers();
    (void)ChooseMap(first);
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
    const int curves =
        curves_.isShown() ? numbers - std::min(curvesHeight, (numbers - head) / 2) : numbers;
    const int planes = isCube() ? std::max(head, curves - PlaneBar::height()) : curves;
    surfaceSplit_.MoveWindow(CRect(0, head, right, planes));
    planes_.MoveWindow(CRect(0, planes, right, curves));
    curves_.MoveWindow(CRect(0, curves, right, numbers));
    areaNumbers_.MoveWindow(CRect(0, numbers, right, foot));
    table_.MoveWindow(CRect(right, head, cx, foot));
    status_.MoveWindow(CRect(0, foot, cx, cy));
}

void MainWindow::OnSetFocus(CWnd*) { view().SetFocus(); }

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

/// Null, and said, when it cannot be read.
std::unique_ptr<MapDocument> MainWindow::readMap(const std::string& file, int plane)
{
    auto opened = std::make_unique<MapDocument>();
    std::string error;
    if (opened->open(this, file, plane, options_, error))
        return opened;
    if (!error.empty())
        AfxMessageBox(error, MB_ICONERROR);
    return nullptr;
}

/// Shows a map, without areas, in one of the windows of maps.
void MainWindow::seatMap(MapWindow& window, MapDocument& document)
{
    giveStyle(document.picture());
    auto* const areas = new ATrackerArrayInAxis;
    setUpPointer(*areas);
    window.SetTrackers(areas, 1);
    showMap(window, document.picture());
    window.SetPlayByMouse(1);
    window.SetSquareCells(!options_.freeAspect && !document.inputs().frame.unlikeAxes);
    placeMarks(window, document);
}

int MainWindow::OpenMap(const std::string& file, int plane)
{
    if (isWorkFile(file))
        return OpenWork(file);
    if (host_ && holdsVisibilities(file))
        return host_->openWindow(file);
    const int known = maps_.find(file);
    if (known >= 0 && known != maps_.current())
        return AddMap(file, plane);  // it is there already
    if (!MayLeave())
        return 0;
    std::unique_ptr<MapDocument> opened = readMap(file, plane);
    if (!opened)
        return 0;
    endBlink();
    // the next map has its own range, whatever was asked for this one
    options_.hasRange = 0;
    options_.play = {};
    const int hasColours = play_ && play_->GetSafeHwnd();
    closeMapDialogs();
    dirtyBeam_.forget();
    session_.begin(file);
    agreedLosses_.clear();
    model_.Close();
    seatMap(view(), *opened);
    view().ChooseTool(toolArrow);  // as the new areas have it, whatever the last ones had
    map_.swap(opened);             // the old one goes when nothing shows it any more
    if (maps_.count() == 0)
        (void)maps_.add(file);
    else
        maps_.replace(maps_.current(), file);
    showMaps();
    currentMapIsOther();
    if (surface_.isShown())
        surface_.Show(map_.get());
    recent_.load();  // other windows add to it
    recent_.add(file);
    setMenu();
    if (hasColours)
        showColours();
    if (IsWindowVisible())
        offerLeftovers();
    if (maps_.count() == 1 && !isWorkShown_)
        workCopy_.begin(workNow(1));
    KeepWork();
    SetTimer(workTimer, workPace);
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
        view().SetAreaNames(options.areaNames);
        view().FollowAreas();
    }
    if (!options.model.empty())
        (void)model_.Open(options.model);
    if (!options.marks.empty())
        (void)openMarks(options.marks);
    for (const std::string& file : options.more)
        (void)AddMap(file, options.plane);
    if (!options.more.empty() && ChooseMap(0))
        tellLinks();
    workCopy_.begin(workNow(1));
    KeepWork();
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

/// The same of the areas of all maps, each shown while it is asked about, and of the components.
int MainWindow::MayLeaveAll()
{
    endBlink();
    for (int i = 0, first = std::max(0, maps_.current()); i < std::max(1, maps_.count()); ++i) {
        const int map = maps_.count() ? (first + i) % maps_.count() : 0;
        const MapSeat& seat = *seats_[static_cast<std::size_t>(map)];
        if (i > 0 && !seat.session.isModified())
            continue;
        if ((i > 0 && !ChooseMap(map)) || !MayLeaveAreas())
            return 0;
    }
    return model_.MayLeave();
}

int MainWindow::isModified()
{
    return map_ && (areas().IsModified() || !areas().KeptState(-1).empty());
}

void MainWindow::OnClose()
{
    if (!MayLeaveAll())
        return;
    SaveWndPos(this, section);
    storeLook();
    session_.end();
    for (const auto& seat : seats_)
        seat->session.end();
    workCopy_.remove();
    KillTimer(workTimer);
    isClosed_ = 1;
    DestroyWindow();
}

void MainWindow::OnDestroy()
{
    // without OnClose before it the session ends in disorder: leave a copy to come back to
    writeCopy();
    if (!isClosed_)
        KeepWork();
    closeMapDialogs();
    created_ = 0;
    if (host_)
        host_->windowClosed(*this);
    else
        PostQuitMessage(0);
}

void MainWindow::OnTimer(unsigned id)
{
    switch (id) {
    case copyTimer:
        KillTimer(copyTimer);
        return writeCopy();
    case blinkTimer:
        return blink();
    case fetchTimer:
        return fetchPlane();
    case prepareTimer:
        return prepareMaps();
    case dragTimer:
        if (!CWnd::GetCapture())
            endFollowing();
        return;
    case workTimer:
        KeepWork();
        return watchMap();
    default:
        return AreaWindow::OnTimer(id);
    }
}

std::int64_t MainWindow::now()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

/// Of the map under the pointer, else of the current one.
void MainWindow::mapStatus(MapWindow& from, const AxisStatus& status)
{
    const int map = seatOf(from);
    if (!created_ || map < 0 || (!isCurrent(from) && map != pointedMap_))
        return;
    if (status.inPlot && isCurrent(from))
        pointed_ = status;
    if (map == pointedMap_)
        followPointer(map, status);
    if (isCurrent(from))
        curves_.PointerAt(status);
    MapDocument* const document = documentOf(map);
    if (!document || from.IsPlaying())  // the play tells of itself
        return;
    StatusTexts texts = document->format().texts(status, document->sky());
    if (const auto& rgb = document->picture().rgb(); rgb && status.inPlot && status.inMap)
        texts[statusValue] = rgbValueText(*rgb, status.row, status.column);
    status_.SetTexts(texts);
}

void MainWindow::mapFocused(MapWindow& from)
{
    part_ = Part::map;
    if (created_ && !choosing_ && !isCurrent(from))
        (void)ChooseMap(seatOf(from));
}

void MainWindow::mapAreasChanged(MapWindow& from)
{
    if (!map_ || !created_)
        return;
    const int map = seatOf(from);
    if (map < 0)
        return;              // it is being made
    if (!isCurrent(from)) {  // over a link
        AreaSession& session = sessionOf(map);
        ATrackerArrayInAxis& areas = *from.GetTrackers();
        (void)session.changed(areas.IsModified(), now());
        return writeCopyOf(areas, session);
    }
    if (showTable_)
        table_.Refresh();
    surface_.SetAreas(areas());
    areaNumbers_.AreasChanged();
    curves_.AreasChanged(0);
    const std::int64_t wait = session_.changed(areas().IsModified(), now());
    updateTitle();
    if (wait > 0)
        SetTimer(copyTimer, static_cast<unsigned>(wait));
    else
        writeCopy();
    followAreas(maps_.current());
}

void MainWindow::writeCopy()
{
    const int hadCopy = session_.hasCopy();
    if (map_)
        writeCopyOf(areas(), session_);
    if (session_.hasCopy() && !hadCopy)
        KeepWork();  // which names it
}

void MainWindow::writeCopyOf(ATrackerArrayInAxis& areas, AreaSession& session)
{
    std::vector<AreaLabel> labels = labelsOf(areas);
    if (!areas.KeptState(-1).empty())
        labels.emplace_back();  // of the open polygon
    if (session.writeCopy([&](AFile& file) { return storeAllAreas(areas, file); }, now(), labels) ||
        copyFailed_)
        return;
    copyFailed_ = 1;  // said once; the next change tries again
    status_.SetMessage("The copy of the unsaved areas cannot be written: " +
                       session.autosave().file());
}

void MainWindow::updateTitle()
{
    SetWindowText(session_.title(model_.session().isModified()) +
                  (map_ && map_->isMoved() ? "  \u2013  moved"
                   : isAnyMoved()          ? "  \u2013  another map is moved"
                                           : ""));
}

}  // namespace pavane

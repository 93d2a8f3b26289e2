#include "apps/clean/CleanWindow.h"

#include "apps/clean/clean_menu.h"
#include "apps/view/window_start.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/windows/window_placement.h"
#include "platform/CMenu.h"
#include "platform/message.h"
#include "platform/platform.h"
#include "tessel/paths.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* section = "pavane-clean";
constexpr CRect firstPlace(60, 40, 1300, 940);
constexpr unsigned idBar = 101, idRow = 102, idStrip = 103, idSplit = 104, idLeft = 105,
                   idRight = 106, idMap = 107, idCurve = 108, idRounds = 109, idTabs = 110,
                   idAreaTable = 111, idComponentTable = 112, idLog = 113, idStatus = 114;
constexpr int mostLogLines = 20000;
constexpr double mapShare = 0.64, curveShare = 0.76, roundShare = 0.5;

}  // namespace

CleanWindow::CleanWindow() = default;

CleanWindow::~CleanWindow() { DestroyWindow(); }

int CleanWindow::Create(const CleanOptions& options)
{
    options_ = options;
    return CWnd::Create(GetWndClassName(), "pavane-clean", WS_OVERLAPPEDWINDOW, firstPlace, nullptr,
                        0);
}

int CleanWindow::OnCreate(CREATESTRUCT& cs)
{
    if (AreaWindow::OnCreate(cs) < 0 || !makeBar(idBar) || !makePanes())
        return -1;
    useMap(map_);
    areaTable_.SetAxisWnd(&map_);
    row_.ExplainBy(tips_);
    recent_.load();
    setMenu();
    connect();
    created_ = 1;
    row_.SetIterations(session_.parameters.iterations);
    refreshRow();
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    updateTitle();
    return 0;
}

int CleanWindow::makePanes()
{
    constexpr unsigned pane = WS_CHILD | WS_VISIBLE;
    constexpr unsigned table = WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL;
    const auto rows = CSplitterWnd::Split::rows;
    const int made =
        row_.Create(this, idRow) && strip_.Create(this, idStrip) &&
        status_.Create(this, idStatus) &&
        split_.Create(CSplitterWnd::Split::columns, pane | WS_TABSTOP, CRect(), this, idSplit) &&
        left_.Create(rows, pane | WS_TABSTOP, CRect(), &split_, idLeft) &&
        right_.Create(rows, pane | WS_TABSTOP, CRect(), &split_, idRight) &&
        map_.Create(map_.GetWndClassName(), CString(), pane | WS_TABSTOP, CRect(), &left_, idMap) &&
        curve_.Create(curve_.GetWndClassName(), CString(), pane | WS_TABSTOP, CRect(), &left_,
                      idCurve) &&
        rounds_.Create(rounds_.GetWndClassName(), CString(), table | WS_VISIBLE, CRect(), &right_,
                       idRounds) &&
        tabs_.Create(pane | WS_TABSTOP, CRect(), &right_, idTabs) &&
        areaTable_.Create(areaTable_.GetWndClassName(), CString(), table, CRect(), &tabs_,
                          idAreaTable) &&
        componentTable_.Create(componentTable_.GetWndClassName(), CString(), table, CRect(), &tabs_,
                               idComponentTable) &&
        log_.Create(WS_CHILD | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), &tabs_, idLog,
                    "What the engine said");
    if (!made)
        return 0;
    log_.SetMostLines(mostLogLines);
    split_.SetPanes(&left_, &right_);
    left_.SetPanes(&map_, &curve_);
    right_.SetPanes(&rounds_, &tabs_);
    (void)tabs_.InsertItem(0, "A&rea", &areaTable_);
    (void)tabs_.InsertItem(1, "C&omponents", &componentTable_);
    (void)tabs_.InsertItem(2, "Lo&g", &log_);
    const struct {
        ASplitterWnd& splitter;
        const char *name, *entry;
        double share;
    } splitters[] = {{split_, "Map and rounds", "RoundsShare", mapShare},
                     {left_, "Map and curve", "CurveShare", curveShare},
                     {right_, "Rounds and details", "DetailsShare", roundShare}};
    for (const auto& each : splitters) {
        each.splitter.SetName(each.name);
        each.splitter.SetShare(each.share);
        (void)each.splitter.SetProfile(section, each.entry);
    }
    return 1;
}

void CleanWindow::setMenu()
{
    CMenu menu;
    menu.LoadMenu(cleanMenu);
    recent_.putInto(menu);
    SetMenu(menu);
}

void CleanWindow::connect()
{
    row_.command = [this](unsigned id) { (void)OnCommand(id, 0, nullptr); };
    map_.command = row_.command;
    map_.status = [this](const AxisStatus& at) { mapStatus(at); };
    map_.areasOther = [this] {
        if (!created_)
            return;
        areaTable_.Refresh();
        SetTimer(areaTimer, areaTime);
        previewSoon();
    };
    map_.notice = [this](const CString& text) { status_.SetMessage(text); };
    map_.coloursOther = [this] {
        if (display_)
            display_->DisplayChanged();
    };
    rounds_.chosen = [this](int round) { showRound(round); };
    rounds_.goesOn = [this](int round) {
        showRound(round);
        map_.SetFocus();
    };
    rounds_.compares = [this](int round) { compareWith(round); };
    rounds_.noted = [this](int round, const std::string& note) {
        if (!session_.study().setNote(round, note))
            complain(session_.study().fault());
    };
    componentTable_.changed = [this] {
        if (created_)
            map_.Invalidate();
    };
    componentTable_.notice = map_.notice;
    rounds_.left = [this] { map_.SetFocus(); };
    rounds_.blinks = [this] { setBlink(!blinks_); };
    areaTable_.left = rounds_.left;
    componentTable_.left = rounds_.left;
    gains_.left = [this] { keepEditedGains(); };
    plots_.complain = [this](const CString& error) { complain(error); };
    plots_.notice = [this](const CString& text) { status_.SetMessage(text); };
    session_.roundsOther = [this] { roundsChanged(); };
    session_.fileWanted = [this](int round) {
        MapKind kind = wanted_ == MapKind::dirty ? MapKind::residual : wanted_;
        const std::string file = fileToShow(round, kind);
        // the first one comes with its axes, which the user has nothing to do before
        return !shown_.isOpen() || shown_.has(file) ? std::string() : file;
    };
    session_.loaded = [this](const std::string& file, MapContent&& content) {
        shown_.offer(file, std::move(content));
    };
    session_.told = [this](const RunNews& news) { jobTold(news); };
    session_.said = [this](const CString& line) { log_.Append(line); };
    session_.began = [this] { jobBegan(); };
    session_.ended = [this](int isDone, const CString& error) { jobEnded(isDone, error); };
}

void CleanWindow::Show()
{
    showPlaced(*this, section, firstPlace);
    if (!session_.isOpen())
        status_.SetMessage("No data are open: Ctrl+O opens some");
    map_.SetFocus();
}

void CleanWindow::OnSize(unsigned type, int cx, int cy)
{
    AreaWindow::OnSize(type, cx, cy);
    if (created_)
        layOut(cx, cy);
}

void CleanWindow::layOut(int cx, int cy)
{
    const int foot = std::max(0, cy - StatusLine::height());
    const int strip = std::max(0, foot - RunStrip::height());
    const int head = std::min(strip, bar_.GetBarHeight(cx));
    const int row = std::min(strip, head + CleanRow::height());
    bar_.MoveWindow({0, 0, cx, head});
    row_.MoveWindow({0, head, cx, row});
    split_.MoveWindow({0, row, cx, strip});
    strip_.MoveWindow({0, strip, cx, foot});
    status_.MoveWindow({0, foot, cx, cy});
}

int CleanWindow::PreTranslateMessage(const MSG& message)
{
    return row_.TakeTab(message) || AreaWindow::PreTranslateMessage(message);
}

void CleanWindow::OnSetFocus(CWnd*) { map_.SetFocus(); }

void CleanWindow::updateTitle()
{
    SetWindowText(session_.isOpen() ? baseNameOf(session_.data()) + "  -  pavane-clean"
                                    : std::string("pavane-clean"));
}

void CleanWindow::complain(const CString& error)
{
    if (!error.empty() && !isClosing_)
        AfxMessageBox(error, MB_ICONERROR);
}

/// Work that runs is the only thing that closing loses: rounds and areas of rounds are on disk.
int CleanWindow::mayLeave()
{
    if (CWnd::GetCapture())
        ReleaseCapture();
    if (session_.isRunning() &&
        AfxMessageBox(session_.jobName() + " runs. Stop it? What it has half made is dropped.",
                      MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) != IDYES)
        return 0;
    return mayDropEdits();
}

void CleanWindow::OnClose()
{
    if (!mayLeave())
        return;
    isClosing_ = 1;
    SaveWndPos(this, section);
    storeAreasNow();
    plots_.close();
    session_.close();
    DestroyWindow();
}

void CleanWindow::OnDestroy()
{
    isClosing_ = 1;
    play_.reset();
    display_.reset();
    gains_.close();
    plots_.close();
    session_.close();
    created_ = 0;
    PostQuitMessage(0);
}

void CleanWindow::openRecent(std::size_t i)
{
    if (i >= recent_.files().size())
        return;
    const std::string study = recent_.files()[i];
    if (IsFileExists(study + "/study.txt"))
        return (void)Open(study);
    recent_.remove(study);
    setMenu();
    complain(study + ": the study is not there any more");
}

int CleanWindow::Open(const std::string& file)
{
    if (session_.isOpen() && !mayLeave())
        return 0;
    CleanOptions options = options_;
    options.data = file;
    std::string error;
    setBlink(0);
    storeAreasNow();
    compared_ = -1;
    gains_.close();
    plots_.close();
    session_.close();
    shown_.forgetRanges();
    log_.Clear();
    int isOpen = session_.open(options, error);
    if (!isOpen && session_.canTakeOver() &&
        AfxMessageBox(error +
                          "\n\nTake it over? A child of that program is ended, and what was half "
                          "made goes.",
                      MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES) {
        options.takeOver = 1;
        error.clear();
        isOpen = session_.open(options, error);
    } else if (!isOpen && session_.canTakeOver()) {
        error.clear();
    }
    if (!isOpen) {
        complain(error);
        updateTitle();
        return 0;
    }
    if (!session_.study().hasData() && !options.hasMap)
        takeSettledParameters();
    recent_.load();  // other windows add to it
    recent_.add(session_.study().folder());
    setMenu();
    row_.SetIterations(session_.parameters.iterations);
    keptAreas_ = session_.study().areas();
    chain_.reset(session_.study().settings().chain);
    shownLink_ = 0;
    roundsChanged();
    // a study that steps of a command line made has those of its rounds alone
    const std::string wanted = keptAreas_.empty() ? session_.areasOf(session_.shown()) : keptAreas_;
    if (shown_.isOpen() && !wanted.empty())
        takeAreas(wanted);
    updateTitle();
    if ((session_.study().rounds().empty() ||
         (!session_.study().hasData() && !session_.study().isReadOnly())) &&
        mayImport() && !session_.startImport(error))
        complain(error);
    return 1;
}

}  // namespace pavane

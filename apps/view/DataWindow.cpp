#include "apps/view/DataWindow.h"

#include "apps/view/data_menu.h"
#include "apps/view/long_work.h"
#include "apps/view/PartWindow.h"
#include "apps/view/window_start.h"
#include "pavane/calibration/uv_colours.h"
#include "pavane/tables/components/component_file.h"
#include "pavane/windows/window_placement.h"
#include "platform/drop_files.h"
#include "platform/message.h"
#include "platform/profile.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>

namespace pavane
{

namespace
{

constexpr const char* program = "pavane-view";
/// Where its place is kept; that of map windows is another.
constexpr const char* section = "pavane-view-data";
constexpr const char *shareEntry = "TableShare", *panelsEntry = "Panels";
constexpr const char *coloursEntry = "ColourBy", *meansEntry = "MeansOver";
constexpr CRect firstPlace(100, 80, 1300, 840);
constexpr double firstShare = 0.48;
constexpr int leastPane = 120;
constexpr unsigned idSplitter = 101, idTabs = 102, idPlot = 103, idStatus = 104;
constexpr unsigned idGroups = 110, idList = 111, idSelector = 120;  ///< one for each table
constexpr unsigned idPanels = 130;

}  // namespace

DataWindow::DataWindow(WindowHost* host)
    : host_(host), splitter_(*this), tabs_(*this), plot_(*this), panels_(*this), recent_(program)
{
    all_.fill(1);
}

DataWindow::~DataWindow() { DestroyWindow(); }

int DataWindow::Create(const ViewOptions& options)
{
    std::string error;
    modelFile_ = options.model;
    times_ = options.times;
    wish_ = options.plot;
    if (!modelFile_.empty() && !readComponentFile(modelFile_, model_, error))
        AfxMessageBox(modelFile_ + ": " + error, MB_ICONERROR);
    recent_.load();
    return CWnd::Create("PavaneData", program, WS_OVERLAPPEDWINDOW, firstPlace, nullptr, 0);
}

int DataWindow::OnCreate(CREATESTRUCT& cs)
{
    constexpr unsigned child = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    if (CWnd::OnCreate(cs) < 0 ||
        !splitter_.Create(CSplitterWnd::Split::columns, child, CRect(), this, idSplitter) ||
        !tabs_.Create(child, CRect(), &splitter_, idTabs) || !makeTabs() ||
        !plot_.Create(plot_.GetWndClassName(), "Amplitude against uv distance", child, CRect(),
                      &splitter_, idPlot) ||
        !panels_.Create(&splitter_, idPanels) || !status_.Create(this, idStatus))
        return -1;
    splitter_.SetPanes(&tabs_, &plot_);
    splitter_.SetLeastSize(leastPane);
    splitter_.SetName("Tables and plot");
    splitter_.SetShare(firstShare);
    (void)splitter_.SetProfile(section, shareEntry);
    int panels = wish_.panels;
    if (panels > 0 || stoval(GetProfileString(section, panelsEntry), panels))
        panels_.SetPanelsOfPage(panels);
    (void)uvColourOf(GetProfileString(section, coloursEntry), pointView_.colour);
    (void)readMeans(GetProfileString(section, meansEntry), pointView_.seconds);
    setMenu();
    DragAcceptFiles(*this);
    created_ = 1;
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    updateTitle();
    return 0;
}

int DataWindow::makeTabs()
{
    for (const UvTable table : uvTables) {
        const auto at = indexOf(table);
        selectors_[at] = std::make_unique<AObservationSelector>(table);
        if (!selectors_[at]->Create("", "", WS_CHILD | WS_TABSTOP, CRect(), &tabs_,
                                    idSelector + static_cast<unsigned>(at)))
            return 0;
        tabs_.InsertItem(tabs_.GetItemCount(), uvTableLook(table).title, selectors_[at].get());
    }
    if (!list_.Create(list_.GetWndClassName(), "", WS_CHILD | WS_TABSTOP, CRect(), &tabs_, idList))
        return 0;
    tabs_.InsertItem(tabs_.GetItemCount(), "List", &list_);
    if (!groups_.Create(groups_.GetWndClassName(), "", WS_CHILD | WS_TABSTOP, CRect(), &tabs_,
                        idGroups))
        return 0;
    groups_.SetDirect(1);
    tabs_.InsertItem(tabs_.GetItemCount(), "Groups", &groups_);
    return 1;
}

void DataWindow::Show()
{
    showPlaced(*this, section, firstPlace);
    if (!data_)
        status_.SetMessage("No file is open: Ctrl+O opens one");
    page()->SetFocus();
}

void DataWindow::OnSize(unsigned type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    if (created_)
        layOut(cx, cy);
}

void DataWindow::layOut(int cx, int cy)
{
    const int foot = std::max(0, cy - StatusLine::height());
    splitter_.MoveWindow(CRect(0, 0, cx, foot));
    status_.MoveWindow(CRect(0, foot, cx, cy));
}

void DataWindow::OnSetFocus(CWnd*) { page()->SetFocus(); }

void DataWindow::setMenu()
{
    CMenu menu;
    menu.LoadMenu(dataMenu);
    recent_.putInto(menu);
    SetMenu(menu);
}

void DataWindow::updateTitle()
{
    const std::string name = data_ ? baseNameOf(data_->file()) : "";
    SetWindowText(name.empty()
                      ? program
                      : name + (groups_.IsModified() ? "*" : "") + "  -  " + std::string(program));
}

// --- the file

int DataWindow::OpenFile(const std::string& file)
{
    if (!holdsVisibilities(file) && host_)
        return host_->openWindow(file);
    if (!MayLeaveGroups())
        return 0;
    auto opened = std::make_unique<DataDocument>();
    std::string error;
    int isOpen = 0;
    if (!doLongWork(this, "Opening " + baseNameOf(file), [&](const ProgressFunction& tell) {
            return isOpen = opened->open(file, error, times_, tell);
        })) {
        status_.SetMessage(baseNameOf(file) + " was not opened");
        return 0;
    }
    times_ = UvTimes();  // they were for this file
    if (!isOpen) {
        AfxMessageBox(error, MB_ICONERROR);
        return 0;
    }
    plot_.ShowPoints(nullptr, nullptr, 0);
    list_.SetVisibilities(nullptr, {});
    panels_.ForgetFile();
    const PlotWish wish = std::exchange(wish_, PlotWish());
    panels_.SetList(wish.baselines, wish.kind);
    data_.swap(opened);
    const UvView before = pointView_;
    if (wish.wasGiven || wish.hasAngle)
        pointView_ = wish.view();
    pointView_.colour = wish.hasColour ? wish.colour : before.colour;
    pointView_.seconds = wish.seconds > 0 ? wish.seconds : before.seconds;
    showPlot(wish.wasGiven ? wish.kind : shownPlot_);
    showDocument();  // the old one goes when nothing shows it any more
    recent_.load();  // other windows add to it
    recent_.add(file);
    setMenu();
    updateTitle();
    return 1;
}

LRESULT DataWindow::WindowProc(unsigned message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_DROPFILES)
        return CWnd::WindowProc(message, wParam, lParam);
    const HWND self = GetSafeHwnd();
    const std::vector<CString> files = DroppedFiles(lParam);
    for (const CString& file : files) {
        if (CWnd::FromHandle(self) != this)
            return 0;
        (void)(data_ && host_ ? host_->openWindow(file) : OpenFile(file));
    }
    return 0;
}

void DataWindow::showDocument()
{
    UvObservation& observation = data_->observation();
    ++settingMarks_;
    told_ = 0;
    all_.fill(1);
    for (const UvTable table : uvTables) {
        selector(table).SetObservation(&observation);
        ABitArray marks(observation.rows(table));
        marks.setAll(1);
        if (table == UvTable::stokes) {
            marks = usualStokes(observation.file().header());
            all_[indexOf(table)] = marks.ones() == marks.count();
        }
        selector(table).SetMark(marks);
        known_[indexOf(table)] = marks.count();
    }
    groups_.SetParameters(&data_->groups());
    --settingMarks_;
    texts_ = StatusTexts();
    status_.Reset();
    plotAgain();
    const std::vector<std::string>& notes = observation.file().notes();
    if (!notes.empty())
        status_.SetMessage(baseNameOf(data_->file()) + ' ' + notes.front() +
                           (notes.size() > 1 ? " (and more)" : ""));
}

int DataWindow::MayLeaveGroups()
{
    if (!data_ || !groups_.IsModified())
        return 1;
    const int answer = AfxMessageBox("The frequency groups of " + baseNameOf(data_->file()) +
                                         " are not saved. Save them now?",
                                     MB_YESNOCANCEL | MB_ICONQUESTION);
    return answer == IDNO || (answer == IDYES && saveGroups());
}

void DataWindow::OnClose()
{
    if (!MayLeaveGroups())
        return;
    SaveWndPos(this, section);
    (void)WriteProfileString(section, panelsEntry, std::to_string(panels_.GetPanelsOfPage()));
    (void)WriteProfileString(section, coloursEntry, uvColourName(pointView_.colour));
    (void)WriteProfileString(section, meansEntry, valToStr(pointView_.seconds, 9));
    DestroyWindow();
}

void DataWindow::OnDestroy()
{
    created_ = 0;
    if (host_)
        host_->windowClosed(*this);
    else
        PostQuitMessage(0);
}

// --- parts of the window

CWnd* DataWindow::page()
{
    CWnd* const shown = tabs_.GetItemPage(tabs_.GetCurSel());
    return shown ? shown : &tabs_;
}

namespace
{

enum Part { tabPart, pagePart, plotPart, parts };

}  // namespace

/// The part that has the focus, -1 for none.
int DataWindow::focusPart()
{
    const CWnd* const focus = GetFocus();
    return isWithin(focus, &shownWindow()) ? plotPart
           : isWithin(focus, page())       ? pagePart
           : isWithin(focus, &tabs_)       ? tabPart
                                           : -1;
}

void DataWindow::goToPart(int step)
{
    const int from = focusPart();
    if (AChartWnd* const chart = panels(); chart && from == plotPart && chart->NextPanel(step))
        return;
    const int part = from < 0 ? pagePart : (from + step + parts) % parts;
    (part == tabPart    ? static_cast<CWnd*>(&tabs_)
     : part == pagePart ? page()
                        : &shownWindow())
        ->SetFocus();
}

void DataWindow::goToTab(int step)
{
    const int wasInside = focusPart() == pagePart;
    tabs_.SelectNext(step);
    if (wasInside)
        page()->SetFocus();
}

ATableWnd& DataWindow::activeTable()
{
    const CWnd* const shown = page();
    for (const auto& one : selectors_)
        if (one.get() == shown)
            return one->table();
    return shown == &list_ ? static_cast<ATableWnd&>(list_) : groups_.ActiveTable();
}

int DataWindow::isPlotActive() { return focusPart() == plotPart; }

}  // namespace pavane

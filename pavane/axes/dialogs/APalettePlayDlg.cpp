#include "pavane/axes/dialogs/APalettePlayDlg.h"

#include "pavane/axes/ABAxis.h"
#include "pavane/axes/dialogs/stand_beside.h"
#include "pavane/axes/maps/AColorsGraph.h"
#include "pavane/axes/windows/AAxisWnd.h"
#include "pavane/images/palettes.h"
#include "pavane/resources/play_dialog.h"
#include "pavane/resources/play_messages.h"
#include "pavane/trackers/collections/area_outlines.h"
#include "pavane/trackers/collections/ATrackerArrayInAxis.h"
#include "pavane/windows/controls/AProgressDlg.h"
#include "platform/accessibility.h"
#include "platform/controls.h"
#include "tessel/rounding.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// Bars of the histogram.
constexpr int barsCounted = 512;
/// What is in view or in areas is looked at again after so long (ms).
constexpr unsigned lookTimer = 1;
constexpr unsigned lookPause = 400;
constexpr int fieldDigits = 6;

constexpr ResizeItem followers[] = {
    {IDC_PLAY_HISTOGRAM, 0, 0, 100, 100},
    {IDC_PLAY_LOW, 0, 100, 0, 100},
    {IDC_PLAY_HIGH, 0, 100, 0, 100},
    {IDC_PLAY_UNIT, 0, 100, 0, 100},
    {IDC_PLAY_SCALE, 0, 100, 0, 100},
    {IDC_PLAY_CELLS, 0, 100, 0, 100},
    {IDC_PLAY_90, 0, 100, 0, 100},
    {IDC_PLAY_95, 0, 100, 0, 100},
    {IDC_PLAY_98, 0, 100, 0, 100},
    {IDC_PLAY_99, 0, 100, 0, 100},
    {IDC_PLAY_995, 0, 100, 0, 100},
    {IDC_PLAY_999, 0, 100, 0, 100},
    {IDC_PLAY_ALL_CELLS, 0, 100, 0, 100},
    {IDC_PLAY_NOISE, 0, 100, 0, 100},
    {IDC_PLAY_ZSCALE, 0, 100, 0, 100},
    {IDC_PLAY_CONTRAST, 0, 100, 0, 100},
    {IDC_PLAY_BIAS, 0, 100, 0, 100},
    {IDC_PLAY_GAMMA, 0, 100, 0, 100},
    {IDC_PLAY_INVERT, 0, 100, 0, 100},
    {IDC_PLAY_BY_PLANE, 0, 100, 0, 100},
    {IDC_PLAY_PALETTES, 100, 0, 100, 100},
    {IDC_PLAY_SAVE, 100, 100, 100, 100},
    {IDC_PLAY_FOR_ALL, 100, 100, 100, 100},
    {IDC_PLAY_NOTE, 0, 100, 100, 100},
    {IDC_PLAY_RESET, 100, 100, 100, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
    {IDC_PLAY_LOW_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_HIGH_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_SCALE_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_CELLS_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_CONTRAST_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_BIAS_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_GAMMA_LABEL, 0, 100, 0, 100},
    {IDC_PLAY_PALETTES_LABEL, 100, 0, 100, 0},
};

/// "Jy/beam" of "[%sJy/beam]".
CString plainUnit(CString title)
{
    for (const char* const mark : {"%s", "~", "[", "]"})
        for (std::size_t at = title.find(mark); at != CString::npos; at = title.find(mark))
            title.erase(at, CString(mark).size());
    return title;
}

/// The cells that the pixels of a plot show.
MapPart partInView(const ABMapGraph& map)
{
    const CRect& plot = map.axis()->getGraphRect();
    MapPart part;
    if (plot.IsRectEmpty())
        return part;
    const PixelCells x = map.columnsOfPixels(plot.left, plot.Width() + 1);
    const PixelCells y = map.rowsOfPixels(plot.top, plot.Height() + 1);
    part.columns = {x.firstCell(), x.endCell()};
    part.rows = {y.firstCell(), y.endCell()};
    return part;
}

}  // namespace

APalettePlayDlg::APalettePlayDlg(AAxisWnd& plot, CWnd* parent)
    : AResizeDialog(palettePlayDialog, parent), window_(&plot), windowLives_(plot.life())
{
    SetResizeItems(followers);
    SetPlacementSection("PalettePlay");
    AHistogramWnd::Listener listener;
    listener.begun = [this] {
        if (!graph())
            return;
        dragged_ = ColorLook(*graph());
        draggedChoice_ = choice_;
        window()->BeginView();
        graph()->setPlayGoing(1);
    };
    listener.moved = [this] { showHandles(); };
    listener.stepped = [this] {
        if (!graph())
            return;
        window()->BeginViewGesture();
        showHandles();
    };
    listener.ended = [this](int kept) {
        if (!graph())
            return;
        graph()->setPlayGoing(0);
        if (!kept)
            choice_ = draggedChoice_;
        const LifeWatch self(life_);
        show(kept ? ColorLook(*graph()) : dragged_);
        if (!self.alive() || !window())
            return;
        window()->EndView();
    };
    histogramWindow_.SetListener(listener);
}

APalettePlayDlg::~APalettePlayDlg() { listen(0); }

AAxisWnd* APalettePlayDlg::window() const { return windowLives_.alive() ? window_ : nullptr; }

AColorsGraph* APalettePlayDlg::graph() const
{
    return window() ? window()->GetColorsGraph() : nullptr;
}

void APalettePlayDlg::listen(int on)
{
    if (!window())
        return;
    if (on)
        window()->SetColorsListener([this] { refresh(); });
    else
        window()->SetColorsListener(nullptr);
}

int APalettePlayDlg::OnInitDialog()
{
    standBeside(*this, window());
    const int result = AResizeDialog::OnInitDialog();
    ReplaceControl(IDC_PLAY_HISTOGRAM, histogramWindow_, "", "",
                   WS_CHILD | WS_VISIBLE | WS_TABSTOP);
    ReplaceControl(IDC_PLAY_PALETTES, paletteList_, "", "", WS_TABSTOP);
    SetAccessName(paletteList_.GetSafeHwnd(), palettesName);
    filling_ = 1;
    for (const char* const text : scaleTexts)
        addLine(IDC_PLAY_SCALE, text);
    for (const char* const text : cellsTexts)
        addLine(IDC_PLAY_CELLS, text);
    filling_ = 0;
    usedForAll_ = 0;
    if (cells_ == Cells::planes)
        cells_ = Cells::map;  // of a dialog that comes up again
    if (graph()) {
        followRange();
        opened_ = ColorLook(*graph());
        openedChoice_ = choice_;
    }
    fillPalettes();
    openedPalette_ = GetGlobalPaletteName();
    listen(1);
    countCells();
    SetTimer(lookTimer, lookPause);
    return result;
}

void APalettePlayDlg::addLine(unsigned id, const char* text)
{
    if (auto* const combo = dynamic_cast<CComboBox*>(GetDlgItem(id)))
        (void)combo->AddString(text);
}

// The cells

void APalettePlayDlg::SetPlanes(const std::vector<const AMatrixAccess*>& planes)
{
    planes_ = planes;
    histogram_.clear();  // it may read planes that go
    stacked_ = std::make_unique<AStackedAccess>(planes_);
    if (planes_.size() < 2 && cells_ == Cells::planes)
        cells_ = Cells::map;
    if (GetSafeHwnd())
        countCells();
}

MapPart APalettePlayDlg::chosenPart()
{
    MapPart part;
    const AColorsGraph* const map = graph();
    if (!map)
        return part;
    if (cells_ == Cells::view)
        part = partInView(*map);
    ATrackerArrayInAxis& areas = *window()->GetTrackers();
    shownAreas_ = outlinesOf(areas);
    if (cells_ != Cells::areas || areas.trackerCount() == 0)
        return part;
    mask_ = ABitMatrix(map->cells().rows(), map->cells().columns());
    areas.FillMatrix(mask_, map->cells().columns(), map->cells().rows(), map->centres());
    part.mask = mask_.rows() > 0 ? &mask_ : nullptr;
    return part;
}

/// Does what goes over the chosen cells so many times. All planes of a cube may take minutes: then
/// it is told how far that is, and the user may give up.
void APalettePlayDlg::overCells(int ways, const std::function<void()>& work)
{
    if (!isOfPlanes())
        return work();
    constexpr int pieces = 1000;
    const AProgress progress;
    AProgressWriter writer(progress);
    const std::vector<double> steps(static_cast<std::size_t>(ways), 1.0);
    writer.SetSteps(steps);
    AProgressDlg dialog(this);
    dialog.SetAlone(1);
    dialog.Follow(progress, planesText);
    OnCounting([&dialog] { return dialog.Look(); });
    int told = pieces;  // of a way before the first
    histogram_.setGoing([&](double done) {
        const int now = truncated(done * pieces);
        if (now < told) {
            writer.SetTotal(pieces);
            told = 0;
        }
        writer.Advance(now - std::exchange(told, now));
        return dialog.Look();
    });
    counting_ = 1;
    work();
    counting_ = 0;
    histogram_.setGoing(nullptr);
    OnCounting(nullptr);
    (void)writer.Finish();
}

/// The user gave up: the cells of the map are at hand.
void APalettePlayDlg::leavePlanes()
{
    cells_ = Cells::map;
    countCells();
    note(planesLeftText);
}

void APalettePlayDlg::countCells()
{
    if (counting_)
        return;
    histogram_.clear();
    if (graph()) {
        const AMatrixAccess& cells =
            isOfPlanes() ? static_cast<const AMatrixAccess&>(*stacked_) : graph()->cells();
        shownPart_ = chosenPart();
        shownMask_ = shownPart_.mask ? mask_ : ABitMatrix();
        shownPart_.mask = shownMask_.rows() > 0 ? &shownMask_ : nullptr;
        overCells(2, [&] {
            (void)histogram_.set(cells, shownPart_);
            countBars();
        });
        if (histogram_.isBrokenOff())
            return leavePlanes();
    } else {
        countBars();
    }
    refresh();
}

/// The values that the histogram should show: the range in force and some more.
TMnMx APalettePlayDlg::wantedBars() const
{
    const MapScale& scale = graph()->scale();
    return HistogramPlot::shownFor({histogram_.least(), histogram_.greatest()},
                                   {scale.low(), scale.high()});
}

void APalettePlayDlg::countBars()
{
    if (!graph() || histogram_.count() < 1)
        return histogramWindow_.SetCounts({}, {});
    const TMnMx shown = wantedBars();
    histogramWindow_.SetCounts(histogram_.bars(shown.min, shown.max, barsCounted), shown);
}

/// Non-zero for a range that the map follows by itself when it is not set.
int APalettePlayDlg::isLeastToGreatest(const RangeRule& rule) const
{
    return rule.kind == RangeRule::Kind::cells && cells_ == Cells::map;
}

/// A range that others have brought is one for all planes; without one each plane has its own.
void APalettePlayDlg::followRange()
{
    const TMnMx range{graph()->centres().zMin, graph()->centres().zMax};
    if (range == choice_.range)
        return;
    const int isSet = range.min < range.max;
    choice_ = {RangeRule(), range, !isSet};
    if (isSet)
        choice_.rule = {RangeRule::Kind::fixed, range.min, range.max};
}

void APalettePlayDlg::MapChanged()
{
    if (counting_)
        return;
    if (graph())
        followRange();
    const int isRuled = graph() && IsByPlane() && !isLeastToGreatest(choice_.rule);
    if (!GetSafeHwnd() && !isRuled)
        return;
    // all planes are the same whichever of them is shown
    if (graph() && isOfPlanes() && histogram_.count() > 0)
        return refresh();
    countCells();
    if (!isRuled)
        return;
    ColorLook look(*graph());
    look.range = choice_.range = choice_.rule.range(histogram_);
    show(look);  // a part of the step that changed the plane
}

/// Without a range for each plane all have the one of the plane that is shown.
void APalettePlayDlg::setByPlane(int on)
{
    if (!on && histogram_.count() < 1)
        return note(noCellsText), refresh();
    choice_.byPlane = on;
    if (on)
        return UseRule(choice_.rule.kind == RangeRule::Kind::fixed ? RangeRule() : choice_.rule);
    ColorLook look(*graph());
    look.range = choice_.range = graph()->zRange();
    note({});
    step(look);
}

void APalettePlayDlg::OnTimer(unsigned id)
{
    if (id != lookTimer)
        return AResizeDialog::OnTimer(id);
    if (!window())
        return (void)PostMessage(WM_CLOSE);  // the map has gone
    if (histogramWindow_.IsDragged() || counting_)
        return;
    if (cells_ == Cells::areas && outlinesOf(*window()->GetTrackers()) != shownAreas_)
        return countCells();
    const MapPart part = cells_ == Cells::view ? chosenPart() : shownPart_;
    if (!(part.rows == shownPart_.rows && part.columns == shownPart_.columns))
        countCells();
}

// The look

/// What the controls show becomes what the map shows.
void APalettePlayDlg::refresh()
{
    const AColorsGraph* const map = graph();
    if (!GetSafeHwnd() || !map)
        return;
    followRange();
    // under a handle that is dragged the histogram stands still
    if (!histogramWindow_.IsDragged() && histogram_.count() > 0 &&
        !(wantedBars() == histogramWindow_.plot().shown()))
        countBars();
    const MapScale& scale = map->scale();
    const AColorPlay& play = map->GetColorPlay();
    histogramWindow_.SetUnit(plainUnit(map->GetOZName()));
    histogramWindow_.SetLook(scale, play, map->mapColors(AColorPlay()));
    filling_ = 1;
    setField(IDC_PLAY_LOW, valToStr(scale.low(), fieldDigits));
    setField(IDC_PLAY_HIGH, valToStr(scale.high(), fieldDigits));
    setField(IDC_PLAY_CONTRAST, valToStr(play.contrast, fieldDigits));
    setField(IDC_PLAY_BIAS, valToStr(play.bias, fieldDigits));
    setField(IDC_PLAY_GAMMA, valToStr(play.gamma, fieldDigits));
    SetDlgItemText(IDC_PLAY_UNIT, plainUnit(map->GetOZName()));
    if (auto* const combo = dynamic_cast<CComboBox*>(GetDlgItem(IDC_PLAY_SCALE)))
        (void)combo->SetCurSel(static_cast<int>(map->scaleKind()));
    if (auto* const combo = dynamic_cast<CComboBox*>(GetDlgItem(IDC_PLAY_CELLS)))
        (void)combo->SetCurSel(static_cast<int>(cells_));
    if (auto* const box = dynamic_cast<CButton*>(GetDlgItem(IDC_PLAY_INVERT)))
        box->SetCheck(play.invert);
    if (auto* const box = dynamic_cast<CButton*>(GetDlgItem(IDC_PLAY_BY_PLANE))) {
        box->SetCheck(IsByPlane());
        (void)box->EnableWindow(planes_.size() > 1 && !isOfPlanes());
    }
    showPalette();
    filling_ = 0;
}

/// The field that is being typed in keeps its text as long as it says what is shown.
void APalettePlayDlg::setField(unsigned id, const CString& text)
{
    CWnd* const field = GetDlgItem(id);
    double typed = 0, wanted = 0;
    const int same = stoval(GetDlgItemText(id), typed) && stoval(text, wanted) && typed == wanted;
    if (field && !same && !(typing_ == id && GetFocus() == field))
        SetDlgItemText(id, text);
}

void APalettePlayDlg::show(const ColorLook& look)
{
    if (AAxisWnd* const map = window())
        map->ShowColorLook(look);
}

/// A change that is a step of the views by itself.
void APalettePlayDlg::step(const ColorLook& look)
{
    if (!graph())
        return;
    const LifeWatch self(life_);
    window()->BeginView();
    show(look);
    if (!self.alive() || !window())
        return;
    window()->EndView();
}

void APalettePlayDlg::showHandles()
{
    if (!graph())
        return;
    const HistogramPlot& plot = histogramWindow_.plot();
    ColorLook look(*graph());
    if (plot.low() != plot.scale().low() || plot.high() != plot.scale().high())
        look.range = {plot.low(), plot.high()};
    look.play = plot.played();
    show(look);
}

void APalettePlayDlg::UseRule(const RangeRule& rule)
{
    if (!graph() || counting_)
        return;
    constexpr int mostWays = 3;
    ColorLook look(*graph());
    overCells(rule.kind == RangeRule::Kind::noise ? mostWays : 1,
              [&] { look.range = rule.range(histogram_); });
    if (histogram_.isBrokenOff())
        return leavePlanes();
    if (IsByPlane() && isLeastToGreatest(rule))
        look.range = {};
    choice_ = {rule, look.range, choice_.byPlane && rule.kind != RangeRule::Kind::fixed};
    note({});
    step(look);
}

/// Typed values are shown at once; what is none is told and changes nothing.
void APalettePlayDlg::fieldChanged(unsigned id)
{
    if (filling_ || !graph())
        return;
    double value = 0;
    if (!stoval(GetDlgItemText(id), value))
        return note(noNumberText);
    const MapScale& scale = graph()->scale();
    ColorLook look(*graph());
    const TMnMx range =
        id == IDC_PLAY_HIGH ? TMnMx{scale.low(), value} : TMnMx{value, scale.high()};
    if (id == IDC_PLAY_CONTRAST)
        look.play.contrast = value;
    else if (id == IDC_PLAY_BIAS)
        look.play.bias = value;
    else if (id == IDC_PLAY_GAMMA)
        look.play.gamma = value;
    else if (!(range.min < range.max))
        return note(rangeOrderText);
    else
        look.range = range;
    if (!look.play.isUsable())
        return note(id == IDC_PLAY_GAMMA ? gammaText : noNumberText);
    note({});
    typing_ = id;
    window()->BeginViewGesture();
    show(look);
    typing_ = 0;
}

void APalettePlayDlg::note(const CString& text) { SetDlgItemText(IDC_PLAY_NOTE, text); }

int APalettePlayDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (code == EN_CHANGE &&
        (id == IDC_PLAY_LOW || id == IDC_PLAY_HIGH || id == IDC_PLAY_CONTRAST ||
         id == IDC_PLAY_BIAS || id == IDC_PLAY_GAMMA))
        return fieldChanged(id), 1;
    if (id >= IDC_PLAY_90 && id <= IDC_PLAY_999)
        return UseRule(RangeRule::middle(playPerCents[id - IDC_PLAY_90])), 1;
    if (!graph() || filling_ || counting_)
        return AResizeDialog::OnCommand(id, code, control);
    ColorLook look(*graph());
    switch (id) {
    case IDC_PLAY_ALL_CELLS:
        return UseRule({}), 1;
    case IDC_PLAY_NOISE:
        return UseRule(RangeRule::ofNoise()), 1;
    case IDC_PLAY_ZSCALE:
        return UseRule({RangeRule::Kind::zscale, 0, 0}), 1;
    case IDC_PLAY_INVERT:
        look.play.invert = !look.play.invert;
        return step(look), 1;
    case IDC_PLAY_BY_PLANE:
        return setByPlane(!IsByPlane()), 1;
    case IDC_PLAY_RESET:
        choice_ = {};
        note({});
        return step({}), 1;
    case IDC_PLAY_SAVE:
        return savePalette(), 1;
    case IDC_PLAY_FOR_ALL:
        return useForAll(), 1;
    case IDC_PLAY_SCALE:
    case IDC_PLAY_CELLS:
        if (code == CBN_SELCHANGE)
            return chooseFromList(id), 1;
        break;
    case IDC_PLAY_PALETTES:
        if (code == LBN_SELCHANGE)
            return choosePalette(), 1;
        break;
    default:
        break;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

void APalettePlayDlg::chooseFromList(unsigned id)
{
    const auto* const combo = dynamic_cast<CComboBox*>(GetDlgItem(id));
    const int chosen = combo ? combo->GetCurSel() : -1;
    if (chosen < 0)
        return;
    if (id == IDC_PLAY_SCALE) {
        ColorLook look(*graph());
        look.scale = static_cast<MapScaleKind>(chosen);
        return step(look);
    }
    const auto wanted = static_cast<Cells>(chosen);
    const int wasByPlane = IsByPlane();
    cells_ = wanted == Cells::planes && planes_.size() < 2 ? Cells::map : wanted;
    note({});
    countCells();
    if (!wasByPlane || !isOfPlanes())
        return;
    choice_.byPlane = 0;  // what all planes have together is one range
    UseRule(choice_.rule);
}

void APalettePlayDlg::OnOK()
{
    listen(0);
    AResizeDialog::OnOK();
}

void APalettePlayDlg::OnCancel()
{
    const LifeWatch self(life_);
    const int forAll = std::exchange(usedForAll_, 0);
    if (forAll)
        (void)(openedPalette_.empty() ? LoadBuiltInPalette() : LoadPalette(openedPalette_));
    choice_ = openedChoice_;
    if (graph() && !(ColorLook(*graph()) == opened_))
        step(opened_);
    else if (forAll && window())
        window()->ContentChanged();
    if (self.alive() && forAll)
        OnPaletteForAll();
    if (!self.alive())
        return;
    listen(0);
    AResizeDialog::OnCancel();
}

void APalettePlayDlg::OnDestroy()
{
    listen(0);
    KillTimer(lookTimer);
    AResizeDialog::OnDestroy();
}

}  // namespace pavane

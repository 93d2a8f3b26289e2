#include "pavane/calibration/windows/AMeanGainWnd.h"

#include "pavane/calibration/gain_charts.h"
#include "pavane/resources/gain_commands.h"
#include "pavane/resources/gain_messages.h"
#include "pavane/tables/TableWatch.h"
#include "platform/CDC.h"
#include "platform/system_colors.h"
#include "platform/window_dc.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace pavane
{

namespace
{

enum Column {
    antennaColumn = 1,
    ifColumn,
    handColumn,
    solutionsColumn,
    failedColumn,
    flaggedColumn,
    amplitudeColumn,
    scatterColumn,
    phaseColumn,
    phaseScatterColumn
};
constexpr int rowUnit = 13;  // eighths of a character
constexpr int digits = 4;
constexpr unsigned tableId = 1;
constexpr int gap = 4;
constexpr int buttonFrame = 10;  ///< above and below its text, both together
constexpr int buttonSides = 24;

double numberOf(const MeanGain& mean, int column)
{
    switch (column) {
    case ifColumn:
        return static_cast<double>(mean.group);
    case solutionsColumn:
        return static_cast<double>(mean.solutions);
    case failedColumn:
        return static_cast<double>(mean.failed);
    case flaggedColumn:
        return static_cast<double>(mean.flagged);
    case amplitudeColumn:
        return mean.amplitude;
    case scatterColumn:
        return mean.amplitudeScatter;
    case phaseColumn:
        return mean.phase;
    default:
        return mean.phaseScatter;
    }
}

}  // namespace

AMeanGainTbl::AMeanGainTbl()
{
    ATableColumn columns[] = {{5, colChars},  {14, colChars}, {12, colChars}, {8, colChars},
                              {12, colChars}, {9, colChars},  {10, colChars}, {11, colChars},
                              {11, colChars}, {17, colChars}, {14, colChars}};
    static_assert(std::size(columns) == std::size(meanGainTitles) + 1);
    setColumnPar(columns, static_cast<long>(std::size(columns)));
    setOptions(optHeaderRow | optVertLines | optHorzLines | optRangeSelect | optSizeColumns |
               optSort);
    SetCellHeaderUnit(rowUnit);
}

AMeanGainTbl::~AMeanGainTbl()
{
    if (gains_)
        gains_->forget(listener_);
}

const char* AMeanGainTbl::GetWndClassName() { return "AMeanGainTbl"; }
CString AMeanGainTbl::profileSection() { return "Table of mean gains"; }

void AMeanGainTbl::SetGains(EditedGains* gains)
{
    if (gains_)
        gains_->forget(listener_);
    gains_ = gains;
    if (gains_)
        listener_ = gains_->listen([this] { follow(); });
    follow();
}

void AMeanGainTbl::follow()
{
    std::vector<MeanGain> means = gains_ ? meanGains(gains_->gains()) : std::vector<MeanGain>();
    const int isOther = means.size() != means_.size();
    means_ = std::move(means);
    const TableWatch watch(*this);
    if (isOther)
        setRows(static_cast<long>(means_.size()));
    if (watch.gone() || !GetSafeHwnd())
        return;
    if (isOther)
        ReConstruct({1, 1, 1, 1});
    if (!watch.gone())
        Invalidate();
}

const MeanGain* AMeanGainTbl::meanAt(int row) const
{
    const auto at = static_cast<std::size_t>(recordOf(row)) - 1;
    return gains_ && row > 0 && at < means_.size() ? &means_[at] : nullptr;
}

std::vector<std::size_t> AMeanGainTbl::SelectedAntennas() const
{
    std::vector<std::size_t> antennas;
    const ASelectRect selection = const_cast<AMeanGainTbl*>(this)->getSelectRect();
    const CellRange selected = selectedCells(selection, grid().extent());
    for (std::int64_t row = selected.firstRow; row <= selected.lastRow; ++row)
        if (const MeanGain* const mean = meanAt(static_cast<int>(row)))
            antennas.push_back(mean->antenna);
    std::sort(antennas.begin(), antennas.end());
    antennas.erase(std::unique(antennas.begin(), antennas.end()), antennas.end());
    return antennas;
}

CString AMeanGainTbl::hdrCellAsStr(int row, int column, void*)
{
    if (row > 0)
        return std::to_string(recordOf(row));
    return column > 0 && column <= static_cast<int>(std::size(meanGainTitles))
               ? meanGainTitles[column - 1]
               : "";
}

CString AMeanGainTbl::cellAsStr(int row, int column, void*)
{
    const MeanGain* const mean = meanAt(row);
    if (!mean || column < antennaColumn || column > phaseScatterColumn)
        return {};
    const AGains& gains = gains_->gains();
    if (gains.antennas().size() <= mean->antenna)
        return {};
    if (column == antennaColumn)
        return gainAntennaName(gains, mean->antenna);
    if (column == ifColumn)
        return gainGroupName(gains, mean->group).substr(sizeof "IF");  // the title says the rest
    if (column == handColumn)
        return CString(1, gains.hands()[mean->hand]);
    if (column >= amplitudeColumn && !mean->solutions)
        return {};
    return valToStr(numberOf(*mean, column), column < amplitudeColumn ? 15 : digits);
}

int AMeanGainTbl::cellNumber(int row, int column, double& value)
{
    const MeanGain* const mean = meanAt(row);
    if (!mean || column == antennaColumn || column == handColumn || column < antennaColumn ||
        column > phaseScatterColumn || (column >= amplitudeColumn && !mean->solutions))
        return 0;
    value = numberOf(*mean, column);
    return 1;
}

void AMeanGainTbl::drawHeaderCell(CDC& dc, CRect& rect, int row, int column)
{
    ATableWnd::drawHeaderCell(dc, rect, row, column);
    drawCellText(dc, rect, row, column, hdrCellAsStr(row, column, nullptr),
                 column >= solutionsColumn);
}

void AMeanGainTbl::drawCell(CDC& dc, CRect& rect, int row, int column, int state)
{
    ATableWnd::drawCell(dc, rect, row, column, state);
    drawCellText(dc, rect, row, column, cellAsStr(row, column, nullptr), column >= solutionsColumn);
}

int AMeanGainTbl::canUndo() { return gains_ && gains_->history().canUndo(); }
int AMeanGainTbl::canRedo() { return gains_ && gains_->history().canRedo(); }
int AMeanGainTbl::Undo() { return gains_ && gains_->undo(); }
int AMeanGainTbl::Redo() { return gains_ && gains_->redo(); }
CString AMeanGainTbl::undoLabel()
{
    return gains_ ? CString(gains_->history().undoLabel()) : CString();
}
CString AMeanGainTbl::redoLabel()
{
    return gains_ ? CString(gains_->history().redoLabel()) : CString();
}

// --- the window

AMeanGainWnd::~AMeanGainWnd()
{
    table_.SetGains(nullptr);
    (void)DestroyWindow();
}

const char* AMeanGainWnd::GetWndClassName() { return "AMeanGainWnd"; }
void AMeanGainWnd::OnNotice(const CString&) {}

void AMeanGainWnd::SetGains(EditedGains* gains)
{
    gains_ = gains;
    table_.SetGains(gains);
}

int AMeanGainWnd::ScaleSelected()
{
    const std::vector<std::size_t> antennas = table_.SelectedAntennas();
    if (!gains_ || antennas.empty())
        return OnNotice(noAntennaToScale), 0;
    const CString label = antennas.size() == 1
                              ? "Scaling of " + gainAntennaName(gains_->gains(), antennas[0])
                              : "Scaling of " + std::to_string(antennas.size()) + " antennas";
    int scaled = 0;
    const HWND self = GetSafeHwnd();
    gains_->begin(label);
    for (const std::size_t antenna : antennas)
        if (const double median = medianAmplitude(gains_->gains(), antenna); median > 0)
            scaled += gains_->scaleAntenna(antenna, 1 / median, label) > 0;
    gains_->end();
    if (!scaled && CWnd::FromHandle(self) == this)
        OnNotice(noAntennaToScale);
    return scaled;
}

int AMeanGainWnd::OnCreate(CREATESTRUCT& cs)
{
    if (ABWindow::OnCreate(cs) == -1 ||
        !table_.Create(table_.GetWndClassName(), "",
                       WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL, CRect(), this,
                       tableId))
        return -1;
    (void)scale_.Create(scaleAntennaText, CButton::Kind::push, WS_CHILD | WS_VISIBLE | WS_TABSTOP,
                        CRect(), this, ID_GAIN_SCALE);
    CRect client;
    GetClientRect(client);
    layOut(client.Width(), client.Height());
    return 0;
}

void AMeanGainWnd::OnSize(unsigned type, int cx, int cy)
{
    ABWindow::OnSize(type, cx, cy);
    layOut(cx, cy);
}

void AMeanGainWnd::layOut(int cx, int cy)
{
    if (!scale_.GetSafeHwnd())
        return;
    CClientDC dc(this);
    CFont font = GetFont();
    dc.SelectObject(&font);
    const CSize text = dc.GetTextExtent(scaleAntennaText);
    const int height = text.cy + buttonFrame;
    const int top = std::max(0, cy - height - gap);
    table_.MoveWindow(CRect(0, 0, cx, std::max(0, top - gap)));
    scale_.MoveWindow(CRect(gap, top, gap + text.cx + buttonSides, top + height));
}

void AMeanGainWnd::DrawWindow(CDC& dc, CRect&, CRect& update)
{
    dc.FillSolidRect(update, GetSysColor(COLOR_BTNFACE));
}

void AMeanGainWnd::OnSetFocus(CWnd*) { table_.SetFocus(); }

int AMeanGainWnd::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    if (id != ID_GAIN_SCALE)
        return ABWindow::OnCommand(id, code, control);
    (void)ScaleSelected();
    return 1;
}

}  // namespace pavane

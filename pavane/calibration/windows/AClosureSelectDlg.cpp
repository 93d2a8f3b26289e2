#include "pavane/calibration/windows/AClosureSelectDlg.h"

#include "pavane/calibration/visibility_charts.h"
#include "pavane/resources/closure_dialog.h"
#include "pavane/tables/grid/text_fold.h"
#include "pavane/windows/library_resources.h"
#include "platform/controls.h"
#include "platform/message.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <set>
#include <utility>

namespace pavane
{

namespace
{

constexpr unsigned countTimer = 1, countPause = 5;
constexpr std::chrono::milliseconds slice(20);
constexpr std::int64_t pieceBytes = std::int64_t{1} << 20;
constexpr ResizeItem followers[] = {
    {IDC_CLOSURE_TELESCOPES, 0, 0, 0, 100},
    {IDC_CLOSURE_SEARCH_LABEL, 100, 0, 100, 0},
    {IDC_CLOSURE_SEARCH, 100, 0, 100, 0},
    {IDC_CLOSURE_TRIANGLES, 0, 0, 100, 100},
    {IDC_CLOSURE_ALL, 0, 100, 0, 100},
    {IDC_CLOSURE_NONE, 0, 100, 0, 100},
    {IDC_CLOSURE_INVERT, 0, 100, 0, 100},
    {IDC_CLOSURE_COUNT, 0, 100, 100, 100},
    {IDOK, 100, 100, 100, 100},
    {IDCANCEL, 100, 100, 100, 100},
};

const DlgTemplate& knownDialog()
{
    AddLibraryResources();
    return closureSelectDialog;
}

std::vector<char> flagsOf(const std::vector<ClosureTriangle>& chosen,
                          const std::vector<ClosureTriangle>& among)
{
    std::set<std::pair<int, std::array<int, 3>>> known;
    for (const ClosureTriangle& t : chosen)
        known.emplace_hint(known.end(), t.subarray, t.telescopes);
    std::vector<char> flags;
    for (const ClosureTriangle& t : among)
        flags.push_back(static_cast<char>(known.contains({t.subarray, t.telescopes})));
    return flags;
}

}  // namespace

AClosureSelectDlg::AClosureSelectDlg(AUVXFile& file, const std::vector<UvBaseline>& baselines,
                                     UvMarks marks, CWnd* parent)
    : AResizeDialog(knownDialog(), parent), file_(file), all_(telescopesOf(baselines)),
      possible_(closureTriangles(all_, baselines)),
      reader_(std::make_unique<ClosureReader>(file, possible_, std::move(marks)))
{
    SetResizeItems(followers);
    SetPlacementSection("Closure triangles");
    marked_ = flagsOf(independentTriangles(possible_), possible_);
    std::vector<ClosureRow> rows;
    for (const ClosureTelescope& telescope : all_) {
        ClosureRow row;
        row.name = telescopeName(file, telescope);
        if (telescope.subarray != 1)
            row.name.append("/").append(std::to_string(telescope.subarray));
        rows.push_back(std::move(row));
    }
    telescopes_.SetRecords(std::move(rows));
    ABitArray all(static_cast<int>(all_.size()));
    all.setAll(1);
    telescopes_.SetMark(all);
    telescopes_.onSelect = [this] {
        if (shown_ == Shown::withTelescope)
            ShowTriangles(shown_);
    };
    list();
    counting_ = !possible_.empty();
}

void AClosureSelectDlg::SetChosen(const std::vector<ClosureTriangle>& triangles)
{
    marked_ = flagsOf(triangles, possible_);
    list();
}

std::vector<ClosureTriangle> AClosureSelectDlg::GetChosen() const
{
    std::vector<char> marked = marked_;
    for (std::size_t i = 0; i < listed_.size(); ++i)
        marked[listed_[i]] = static_cast<char>(triangles_.isMarked(static_cast<int>(i)));
    std::vector<ClosureTriangle> chosen;
    for (std::size_t t = 0; t < possible_.size(); ++t)
        if (marked[t] && areTelescopesMarked(possible_[t]))
            chosen.push_back(possible_[t]);
    return chosen;
}

int AClosureSelectDlg::OnInitDialog()
{
    constexpr unsigned style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL;
    (void)ReplaceControl(IDC_CLOSURE_TELESCOPES, telescopes_, telescopes_.GetWndClassName(),
                         "Telescopes", style);
    (void)ReplaceControl(IDC_CLOSURE_TRIANGLES, triangles_, triangles_.GetWndClassName(),
                         "Triangles", style);
    if (auto* const kinds = static_cast<CComboBox*>(GetDlgItem(IDC_CLOSURE_KIND))) {
        for (const char* kind : closureKinds)
            (void)kinds->AddString(kind);
        (void)kinds->SetCurSel(static_cast<int>(shown_));
    }
    (void)AResizeDialog::OnInitDialog();
    list();
    (void)SetTimer(countTimer, countPause);
    triangles_.SetFocus();
    return 0;
}

// --- the list

ClosureRow AClosureSelectDlg::rowOf(std::size_t triangle) const
{
    ClosureRow row;
    row.name = triangleName(file_, possible_[triangle]);
    row.isTrivial = isTrivial(file_, possible_[triangle]);
    if (counting_)
        return row;
    const ClosureStatistics found = statisticsOf(reader_->series(triangle));
    row.isKnown = 1;
    row.points = static_cast<double>(found.count);
    row.mean = found.mean;
    row.scatter = found.scatter;
    return row;
}

void AClosureSelectDlg::keepMarks()
{
    for (std::size_t i = 0; i < listed_.size(); ++i)
        marked_[listed_[i]] = static_cast<char>(triangles_.isMarked(static_cast<int>(i)));
}

/// Index of the telescope with the focus in its list.
std::ptrdiff_t AClosureSelectDlg::focusTelescope()
{
    return std::max(telescopes_.recordOf(telescopes_.getSelectRect().anchorRow), 1) - 1;
}

int AClosureSelectDlg::areTelescopesMarked(const ClosureTriangle& t) const
{
    for (const int number : t.telescopes)
        if (!telescopes_.isMarked(static_cast<int>(indexOf({t.subarray, number}))))
            return 0;
    return 1;
}

std::ptrdiff_t AClosureSelectDlg::indexOf(const ClosureTelescope& telescope) const
{
    return std::lower_bound(all_.begin(), all_.end(), telescope) - all_.begin();
}

int AClosureSelectDlg::isListed(const ClosureTriangle& t)
{
    if (!areTelescopesMarked(t))
        return 0;
    const std::ptrdiff_t focus = focusTelescope();
    if (shown_ == Shown::withTelescope &&
        std::none_of(t.telescopes.begin(), t.telescopes.end(), [&](int number) {
            return indexOf({t.subarray, number}) == focus;
        }))
        return 0;
    return search_.empty() ||
           smallLetters(triangleName(file_, t)).find(smallLetters(search_)) != std::string::npos;
}

void AClosureSelectDlg::list()
{
    ++listing_;
    // an independent set is one of the marked telescopes alone, most points first
    std::vector<char> independent(possible_.size(), 1);
    if (shown_ == Shown::independent) {
        std::vector<ClosureTriangle> among;
        for (const ClosureTriangle& t : possible_)
            if (areTelescopesMarked(t))
                among.push_back(t);
        independent = flagsOf(independentTriangles(among), possible_);
    }
    listed_.clear();
    std::vector<ClosureRow> rows;
    for (std::size_t t = 0; t < possible_.size(); ++t)
        if (independent[t] && isListed(possible_[t])) {
            listed_.push_back(t);
            rows.push_back(rowOf(t));
        }
    triangles_.SetRecords(std::move(rows));
    ABitArray marks(static_cast<int>(listed_.size()));
    for (std::size_t i = 0; i < listed_.size(); ++i)
        marks.set(static_cast<int>(i), marked_[listed_[i]]);
    triangles_.SetMark(marks);
    --listing_;
    showCount();
}

void AClosureSelectDlg::ShowTriangles(Shown shown)
{
    keepMarks();
    shown_ = shown;
    list();
}

void AClosureSelectDlg::Search(const CString& text)
{
    keepMarks();
    search_ = text;
    list();
}

void AClosureSelectDlg::showCount()
{
    if (!GetSafeHwnd())
        return;
    CString text =
        std::to_string(GetChosen().size()) + " of " + std::to_string(possible_.size()) + " marked";
    if (counting_)
        text += ", counting " + std::to_string(static_cast<int>(100 * reader_->done())) + " %";
    else if (!reader_->error().empty())
        text += ", the file " + reader_->error();
    SetDlgItemText(IDC_CLOSURE_COUNT, text);
}

// --- counting

void AClosureSelectDlg::countPoints()
{
    counting_ = 0;
    for (std::size_t t = 0; t < possible_.size(); ++t)
        possible_[t].points = static_cast<std::int64_t>(reader_->series(t).count());
    std::vector<ClosureRow> rows;
    for (const std::size_t t : listed_)
        rows.push_back(rowOf(t));
    if (shown_ == Shown::independent) {
        keepMarks();
        list();
    } else
        triangles_.SetNumbers(std::move(rows));
    showCount();
}

void AClosureSelectDlg::ReadAll()
{
    while (counting_ && reader_->step()) {
    }
    if (counting_)
        countPoints();
}

void AClosureSelectDlg::OnTimer(unsigned id)
{
    if (id != countTimer)
        return AResizeDialog::OnTimer(id);
    const auto end = std::chrono::steady_clock::now() + slice;
    while (counting_ && std::chrono::steady_clock::now() < end)
        if (!reader_->step(pieceBytes))
            countPoints();
    if (!counting_)
        (void)KillTimer(countTimer);
    showCount();
}

int AClosureSelectDlg::OnCommand(unsigned id, unsigned code, CWnd* control)
{
    switch (id) {
    case IDC_CLOSURE_ALL:
        return (void)triangles_.cmMarkAll(), 1;
    case IDC_CLOSURE_NONE:
        return (void)triangles_.cmMarkNone(), 1;
    case IDC_CLOSURE_INVERT:
        return (void)triangles_.cmInvertMarks(), 1;
    case IDC_CLOSURE_KIND:
        if (code == CBN_SELCHANGE)
            ShowTriangles(static_cast<Shown>(
                std::max(static_cast<CComboBox*>(GetDlgItem(IDC_CLOSURE_KIND))->GetCurSel(), 0)));
        return 1;
    case IDC_CLOSURE_SEARCH:
        if (code == EN_CHANGE)
            Search(GetDlgItemText(IDC_CLOSURE_SEARCH));
        return 1;
    case IDC_CLOSURE_TELESCOPES:
        if (code == MTN_MARKS && !listing_) {
            keepMarks();
            list();
        }
        return 1;
    case IDC_CLOSURE_TRIANGLES:
        if (code == MTN_MARKS && !listing_)
            showCount();
        return 1;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

void AClosureSelectDlg::OnOK()
{
    if (GetChosen().empty()) {
        AfxMessageBox(noTrianglesChosen, MB_ICONINFORMATION);
        return;
    }
    AResizeDialog::OnOK();
}

}  // namespace pavane

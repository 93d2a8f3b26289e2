#include "pavane/calibration/windows/AClosureSelectDlg.h"

#include "pavane/calibration/visibility_charts.h"
#include "pavane/resources/closure_dialog.h"
#include "pavane/tables/grid/text_fold.h"
#include "pavane/windows/library_resources.h"
#include "platform/controls.h"
#include "platform/message.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <iterator>
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
    {IDC_CLOSURE_SECONDS_LABEL, 0, 100, 0, 100},
    {IDC_CLOSURE_SECONDS, 0, 100, 0, 100},
    {IDC_CLOSURE_SECONDS_UNIT, 0, 100, 0, 100},
    {IDC_CLOSURE_EACH_IF, 0, 100, 0, 100},
    {IDC_CLOSURE_EACH_STOKES, 0, 100, 0, 100},
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
    flags.reserve(among.size());
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
    counting_ = !possible_.empty();
    marked_ = independentFlags();
    list();
}

void AClosureSelectDlg::SetChosen(const std::vector<ClosureTriangle>& triangles)
{
    marked_ = flagsOf(triangles, possible_);
    isMarked_ = 1;
    list();
}

void AClosureSelectDlg::SetAveraging(const ClosureAveraging& averaging)
{
    averaging_ = averaging;
    if (!GetSafeHwnd())
        return;
    SetDlgItemText(IDC_CLOSURE_SECONDS,
                   averaging.seconds > 0 ? valToStr(averaging.seconds) : CString());
    static_cast<CButton*>(GetDlgItem(IDC_CLOSURE_EACH_IF))->SetCheck(averaging.split.ifs);
    static_cast<CButton*>(GetDlgItem(IDC_CLOSURE_EACH_STOKES))->SetCheck(averaging.split.stokes);
}

/// Takes the fields; 0 when they hold no number.
int AClosureSelectDlg::readAveraging()
{
    ClosureAveraging read;
    const CString text = GetDlgItemText(IDC_CLOSURE_SECONDS);
    const int isGiven = text.find_first_not_of(' ') != CString::npos;
    if (isGiven &&
        (!stoval(text, read.seconds) || !(read.seconds >= 0) || !std::isfinite(read.seconds)))
        return 0;
    read.split.ifs = static_cast<CButton*>(GetDlgItem(IDC_CLOSURE_EACH_IF))->GetCheck();
    read.split.stokes = static_cast<CButton*>(GetDlgItem(IDC_CLOSURE_EACH_STOKES))->GetCheck();
    averaging_ = read;
    return 1;
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
    if (auto* const names = static_cast<CComboBox*>(GetDlgItem(IDC_CLOSURE_REFERENCE))) {
        for (const ClosureRow& row : telescopes_.records())
            (void)names->AddString(row.name);
        (void)names->SetCurSel(static_cast<int>(reference_));
    }
    SetAveraging(averaging_);
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

/// An independent set of the marked telescopes alone, most points first; of what has been counted
/// only triangles that have points. Found anew only where something else is marked or known.
const std::vector<char>& AClosureSelectDlg::independentFlags()
{
    std::vector<char> of = {static_cast<char>(counting_)};
    for (int i = 0; i < static_cast<int>(all_.size()); ++i)
        of.push_back(static_cast<char>(telescopes_.isMarked(i)));
    if (of == independentOf_)
        return independent_;
    independentOf_ = std::move(of);
    std::vector<ClosureTriangle> among;
    for (const ClosureTriangle& t : possible_)
        if (areTelescopesMarked(t) && (t.points > 0 || counting_))
            among.push_back(t);
    return independent_ = flagsOf(independentTriangles(among), possible_);
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
    if (shown_ == Shown::withReference &&
        std::none_of(t.telescopes.begin(), t.telescopes.end(), [&](int number) {
            return indexOf({t.subarray, number}) == reference_;
        }))
        return 0;
    return search_.empty() ||
           smallLetters(triangleName(file_, t)).find(smallLetters(search_)) != std::string::npos;
}

void AClosureSelectDlg::list()
{
    ++listing_;
    const std::vector<char> isShown =
        shown_ == Shown::independent ? independentFlags() : std::vector<char>(possible_.size(), 1);
    listed_.clear();
    std::vector<ClosureRow> rows;
    for (std::size_t t = 0; t < possible_.size(); ++t)
        if (isShown[t] && isListed(possible_[t])) {
            listed_.push_back(t);
            rows.push_back(rowOf(t));
        }
    triangles_.SetRecords(std::move(rows));
    showMarks();
    --listing_;
}

void AClosureSelectDlg::showMarks()
{
    ++listing_;
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

void AClosureSelectDlg::SetReference(int telescope)
{
    keepMarks();
    reference_ = std::clamp<std::ptrdiff_t>(telescope, 0, std::ssize(all_) - 1);
    shown_ = Shown::withReference;
    if (GetSafeHwnd()) {
        (void)static_cast<CComboBox*>(GetDlgItem(IDC_CLOSURE_KIND))
            ->SetCurSel(static_cast<int>(shown_));
        (void)static_cast<CComboBox*>(GetDlgItem(IDC_CLOSURE_REFERENCE))
            ->SetCurSel(static_cast<int>(reference_));
    }
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
    keepMarks();
    if (!isMarked_)
        marked_ = independentFlags();
    if (shown_ == Shown::independent)
        return list();
    // the same lines, so the place in the list stays
    std::vector<ClosureRow> rows;
    for (const std::size_t t : listed_)
        rows.push_back(rowOf(t));
    triangles_.SetNumbers(std::move(rows));
    showMarks();
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
    case IDC_CLOSURE_REFERENCE:
        if (code == CBN_SELCHANGE)
            SetReference(static_cast<CComboBox*>(GetDlgItem(id))->GetCurSel());
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
        if (code == MTN_MARKS && !listing_) {
            isMarked_ = 1;
            showCount();
        }
        return 1;
    }
    return AResizeDialog::OnCommand(id, code, control);
}

void AClosureSelectDlg::OnOK()
{
    const char* const lack = GetChosen().empty() ? noTrianglesChosen
                             : readAveraging()   ? nullptr
                                                 : noSecondsGiven;
    if (lack) {
        AfxMessageBox(lack, MB_ICONINFORMATION);
        return;
    }
    AResizeDialog::OnOK();
}

}  // namespace pavane

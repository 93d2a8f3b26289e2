#pragma once

#include "pavane/tables/observation/AObservationTbl.h"
#include "platform/controls.h"

#include <memory>
#include <vector>

namespace pavane
{

/// A window in which records of an observation are chosen: their table with a mark for each, the
/// buttons All, None and Invert, and how many are marked. Its parent gets the WM_COMMAND notices of
/// the table, MTN_MARKS and OTN_FILLING, under the identifier of this window.
class PAVANE_API AObservationSelector : public ABWindow
{
public:
    explicit AObservationSelector(UvTable table);
    ~AObservationSelector() override;

    /// Not owned; null for none.
    void SetObservation(UvObservation* observation) { table_.SetObservation(observation); }
    AObservationTbl& table() { return table_; }
    /// A bit for each record, in the order of the file. Marks follow their baselines and scans
    /// while these are still being found.
    void SetMark(const ABitArray& marks) { table_.SetMark(marks); }
    const ABitArray& GetMark() const { return table_.GetMark(); }
    /// "3 of 10 marked", and what is still being read.
    CString CountText() const;

    // Its pages are those of the table.
    int GetPages(CDC& dc) override { return table_.GetPages(dc); }
    int GetPrintPercent(CDC& dc) override { return table_.GetPrintPercent(dc); }
    CString GetSubscript() override { return table_.GetSubscript(); }
    void PrintWindow(CDC& dc, CRect& rect, int page) override
    {
        table_.PrintWindow(dc, rect, page);
    }
    const char* GetWndClassName() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;

protected:
    int PreCreateWindow(CREATESTRUCT& cs) override;
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    class Button;
    void layOut();
    void showCount();

    AObservationTbl table_;
    std::vector<std::unique_ptr<Button>> buttons_;
    CStatic strip_;  ///< the ground of what stands below the table
    CStatic count_;
};

}  // namespace pavane

#pragma once

#include "pavane/calibration/EditedGains.h"
#include "pavane/calibration/mean_gains.h"
#include "pavane/tables/ATableWnd.h"
#include "platform/controls.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// Median and scatter of gains: a row for each antenna, group of IFs and hand.
class PAVANE_API AMeanGainTbl : public ATableWnd
{
public:
    AMeanGainTbl();
    ~AMeanGainTbl() override;
    void SetGains(EditedGains* gains);
    const std::vector<MeanGain>& means() const { return means_; }
    /// The antennas of the selected rows, each once.
    std::vector<std::size_t> SelectedAntennas() const;

    const char* GetWndClassName() override;
    CString profileSection() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    void drawHeaderCell(CDC& dc, CRect& rect, int row, int column) override;
    void drawCell(CDC& dc, CRect& rect, int row, int column, int state) override;
    int canUndo() override;
    int canRedo() override;
    int Undo() override;
    int Redo() override;
    CString undoLabel() override;
    CString redoLabel() override;

private:
    void follow();
    const MeanGain* meanAt(int row) const;

    EditedGains* gains_ = nullptr;
    int listener_ = 0;
    std::vector<MeanGain> means_;
};

/// The table of mean gains, and a button that scales antennas by their medians.
class PAVANE_API AMeanGainWnd : public ABWindow
{
public:
    ~AMeanGainWnd() override;
    /// Shows and edits gains, which are not owned and go after the window or another call; null for
    /// none.
    void SetGains(EditedGains* gains);
    AMeanGainTbl& table() { return table_; }
    /// Divides all gains of the antennas of the selected rows by the median of their usable
    /// amplitudes, as one step of undo. How many antennas have changed.
    int ScaleSelected();

    const char* GetWndClassName() override;
    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    // Its pages are those of the table.
    int GetPages(CDC& dc) override { return table_.GetPages(dc); }
    int GetPrintPercent(CDC& dc) override { return table_.GetPrintPercent(dc); }
    void PrintWindow(CDC& dc, CRect& rect, int page) override
    {
        table_.PrintWindow(dc, rect, page);
    }
    /// Something that the user should read and need not answer; heirs show it.
    virtual void OnNotice(const CString& text);

protected:
    int OnCreate(CREATESTRUCT& cs) override;
    void OnSize(unsigned type, int cx, int cy) override;
    void OnSetFocus(CWnd* old) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void layOut(int cx, int cy);

    EditedGains* gains_ = nullptr;
    AMeanGainTbl table_;
    CButton scale_;
};

}  // namespace pavane

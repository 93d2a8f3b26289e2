#pragma once

#include "pavane/tables/observation/AMarkTable.h"
#include "pavane/tables/uvdata/UvObservation.h"

namespace pavane
{

/// Code of the WM_COMMAND that the parent gets, with the identifier of the table, when more groups
/// have been read for it, or reading was stopped or goes on.
inline constexpr unsigned OTN_FILLING = 0x0A01;

/// A table of an observation: sorted by a click on a title, found in, sized, copied and saved as
/// text. What needs all groups of the file is filled while the window lives; its corner says how
/// far that is, Escape stops it and leaves what was found so far, and the menu goes on.
///
/// With MarkItems::rows its records have marks, boxes before the numbers of the rows; texts are the
/// same with and without. Marks and the focus stay on their records while the table grows and is
/// sorted.
class PAVANE_API AObservationTbl : public AMarkTable, private UvObserver
{
public:
    explicit AObservationTbl(UvTable table, MarkItems items = MarkItems::none);
    ~AObservationTbl() override;

    /// Not owned; null for none. Marks of another observation are dropped.
    void SetObservation(UvObservation* observation);
    UvObservation* GetObservation() const { return observation_; }
    UvTable table() const { return table_; }
    /// What is being read of it, "42 % of the visibilities"; "" for a table that is whole.
    CString StateText() const;
    void StopFilling();
    void ResumeFilling();

    const char* GetWndClassName() override;
    CString hdrCellAsStr(int row, int column, void* context) override;
    CString cellAsStr(int row, int column, void* context) override;
    int cellNumber(int row, int column, double& value) override;
    int isTextRight(int column) override;
    CString profileSection() override;
    CString OnToolTip(CPoint point) override;
    void amMenuParse(CMenu* popup) override;
    int RunTableCommand(unsigned id) override;

protected:
    /// Told while the table fills; the base tells the parent.
    virtual void OnFilling();

    int PreCreateWindow(CREATESTRUCT& cs) override;
    int OnCreate(CREATESTRUCT& cs) override;
    void OnTimer(unsigned id) override;
    void OnKeyDown(unsigned key, unsigned repeat, unsigned flags) override;

private:
    void RecordsChanged(UvTable table) override;
    void FillingChanged() override;
    void ObservationEnds() override;
    void showRecords(int stay);
    int isFilling() const;
    void goOn();

    UvTable table_;
    UvObservation* observation_ = nullptr;
    CString shownPart_;
};

}  // namespace pavane

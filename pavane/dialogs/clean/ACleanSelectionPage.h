#pragma once

#include "pavane/dialogs/AFormPage.h"
#include "pavane/dialogs/values/SelectionForm.h"
#include "pavane/tables/observation/AFreqGroupTbl.h"

namespace pavane
{

/// The page "CLEAN selection": the polarisation form of those that the hands allow, the range of
/// times, and the IFs, made groups in their table. An IF of no group is not used; one in two is
/// refused. The page tells when the choice asks for a new beam and so for a new dirty map.
class PAVANE_API ACleanSelectionPage : public AFormPage, private FreqGroupView
{
public:
    explicit ACleanSelectionPage(const CString& caption = CString());
    ~ACleanSelectionPage() override;

    /// Takes a copy, and shows it when the page has its window.
    void SetParameters(const ACleanSelectionPM& parameters);
    /// The choice as it was accepted last.
    const ACleanSelectionPM& GetParameters() const { return form_.record(); }
    AFreqGroupTbl& table() { return table_; }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void GroupsChanged(const FreqGroupNews& news) override;
    void addMarked();
    void enableButtons();

    SelectionForm form_;
    /// Of keys it leaves to the page what goes through it and ends it.
    class IfTable : public AFreqGroupTbl
    {
        unsigned OnGetDlgCode() override;
    };
    IfTable table_;
    int isTaking_ = 0;  ///< the page itself gives the table its groups
};

/// Shows a sheet with the page. Non-zero when the user took a choice, by OK or "Apply", which `pm`
/// then is; else `pm` is as before.
PAVANE_API int AskCleanSelection(CWnd* parent, ACleanSelectionPM& pm);

}  // namespace pavane

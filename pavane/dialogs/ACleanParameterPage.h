#pragma once

#include "pavane/dialogs/AFormPage.h"
#include "pavane/dialogs/values/CleanForm.h"

namespace pavane
{

/// The page "CLEAN parameters": size, cell, weighting and centre of the map, and how a round is
/// cleaned. The cell that the data propose stands beside, with a button that takes it. The page
/// tells when a change asks for a new beam and so for a new dirty map.
class PAVANE_API ACleanParameterPage : public AFormPage
{
public:
    explicit ACleanParameterPage(const CString& caption = CString());

    /// Takes a copy, and shows it when the page has its window. The beam that there is belongs to
    /// these parameters; those with a cell of 0 have none yet.
    void SetParameters(const ACleanParameterPM& parameters);
    /// The choice as it was accepted last.
    const ACleanParameterPM& GetParameters() const { return form_.record(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    CleanForm form_;
};

/// Shows a sheet with the page. Non-zero when the user took a choice, by OK or "Apply", which `pm`
/// then is; else `pm` is as before.
PAVANE_API int AskCleanParameters(CWnd* parent, ACleanParameterPM& pm);

}  // namespace pavane

#pragma once

#include "pavane/dialogs/AFormPage.h"
#include "pavane/dialogs/values/SelfCalForm.h"

namespace pavane
{

/// The page "Self-calibration": what is solved for, how time is cut, which solutions fail, the
/// reference antennas in their order, the model and its range of uv distances, and what becomes of
/// weights and of data without a solution.
class PAVANE_API ASelfCalPage : public AFormPage
{
public:
    explicit ASelfCalPage(const CString& caption = CString());

    /// Takes a copy, and shows it when the page has its window.
    void SetParameters(const ASelfCalPM& parameters);
    /// The choice as it was accepted last.
    const ASelfCalPM& GetParameters() const { return form_.record(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void showAntennas();
    void moveAntenna(int by);

    SelfCalForm form_;
};

/// Shows a sheet with the page. Non-zero when the user took a choice, by OK or "Apply", which `pm`
/// then is; else `pm` is as before.
PAVANE_API int AskSelfCalibration(CWnd* parent, ASelfCalPM& pm);

}  // namespace pavane

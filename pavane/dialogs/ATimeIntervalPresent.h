#pragma once

#include "pavane/dialogs/values/TimeIntervalForm.h"
#include "pavane/windows/AResizeSheet.h"

namespace pavane
{

/// The page "Time Intervals" of a property sheet: which part of an observation a processing step
/// uses and how it is cut, with the times of the data beside it. OK, "Apply" and leaving the page
/// take what stands there, or say what is wrong and stay.
class PAVANE_API ATimeIntervalPresent : public AResizePage
{
public:
    AUVXTIntervalPM pm;   ///< the choice, as it was taken last
    int showAsClock = 1;  ///< the form that is checked: clock text, or 0 for seconds

    /// A template with the controls IDC_TIME_START to IDC_TIME_DEFAULT, as IDD_TIME_INTERVALS or
    /// IDD_TIME_INTERVALS_NARROW, and the text of its tab, as IDS_TIME_INTERVALS.
    ATimeIntervalPresent(unsigned templateId, unsigned captionId);

    /// Takes a copy, and shows it when the page has its window.
    void SetParameters(const AUVXTIntervalPM& parameters);
    /// The choice as SaveTime took it last.
    AUVXTIntervalPM GetParameters() const { return pm; }
    /// Checks what stands on the page and takes it into `pm`. 1 when it is accepted; else 0, with a
    /// message, the focus in the edit that is wrong and `pm` as before. Without a window it judges
    /// `pm` itself.
    int SaveTime();
    /// What the button "Default" shows: in a host's page whatever it sets, here the times of the
    /// data, which the three hold already.
    virtual void Default(double& start, double& stop, double& interval);

    int OnKillActive() override { return SaveTime(); }
    int OnApply() override { return SaveTime(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    /// Shows the six times of `pm` as clock text, or in seconds.
    void ShowTimePar(int asClock);
    /// Another state of "Every point": with it, intervals cannot be set.
    void OnAnyTime();
    /// The button "Default".
    void OnDefault();
    /// The button "Set Intervals...".
    void OnSetIntervals();

private:
    void takeTexts();
    void showTexts();
    void showForm();
    void showCount();
    void chooseForm(int asClock);
    int isChecked(unsigned id) const;
    int refuse(const TimeRefusal& refusal);

    TimeIntervalForm form_;
    int isShowing_ = 0;  ///< the page writes its edits itself
};

/// Shows a property sheet with the page of time intervals for `pm`. Non-zero when the user took a
/// choice, by OK or "Apply", which `pm` then is; else `pm` is as before.
PAVANE_API int AskTimeInterval(CWnd* parent, AUVXTIntervalPM& pm);

}  // namespace pavane

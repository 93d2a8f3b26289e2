// Dialogs that need to know the data: their selection, files of gains.
#include "apps/clean/CalibrationRun.h"
#include "apps/clean/CleanWindow.h"
#include "apps/clean/h5_form.h"
#include "pavane/dialogs/AGainFilesDlg.h"
#include "pavane/dialogs/clean/ACleanSelectionPage.h"
#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "tessel/gains/gain_files.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"

namespace pavane
{

void CleanWindow::askSelection()
{
    if (!session_.isOpen() || session_.isRunning())
        return;
    AUVXFile data;
    std::string error;
    if (!data.open(session_.study().uvfitsFile(), error))
        return complain(session_.study().uvfitsFile() + ": " + error);
    ACleanSelectionPM wish;
    wish.SetData(data, AUVXTIntervalPM(data, -1, -1));
    wish.takeFrom(session_.parameters);
    if (!AskCleanSelection(this, wish))
        return;
    CleanParameters next = session_.parameters;
    wish.giveTo(next);
    if (!isOtherSelection(next, session_.parameters))
        return;
    session_.parameters = next;
    if (!session_.keepParameters(error) || !session_.startFirstMaps(error))
        complain(error);
}

/// Those of the last link of the chain.
void CleanWindow::saveGains()
{
    const std::vector<StudyLink>& chain = session_.study().settings().chain;
    if (chain.empty())
        return status_.SetMessage("The chain has no gains yet: F8 solves for some");
    const std::string file = session_.study().gainText(chain.back().gains);
    AGains gains;
    std::string error;
    if (!readGainText(file, gains, error))
        return complain(file + ": " + error);
    AGainFilesDlg dialog(gains, this);
    dialog.AddForm(h5ParmForm(session_.dataProgram(), session_.study().uvfitsFile(),
                              session_.study().folder() + "/work", this));
    dialog.SetFile(folderOf(session_.data()) + "gains.fits");
    if (dialog.DoModal() == IDOK)
        status_.SetMessage("Wrote \"" + chain.back().name + "\" to " + dialog.GetFile());
}

/// Become a link of the chain; the residual of the shown model on the data that they correct
/// follows.
void CleanWindow::loadGains()
{
    if (session_.isRunning())
        return;
    AUVXFile data;
    std::string error;
    if (!data.open(session_.study().uvfitsFile(), error))
        return complain(session_.study().uvfitsFile() + ": " + error);
    AGainFilesDlg dialog(gainFactsOf(data, AUVXTIntervalPM(data, -1, -1)), this);
    dialog.AddForm(h5ParmForm(session_.dataProgram(), session_.study().uvfitsFile(),
                              session_.study().folder() + "/work", this));
    if (dialog.DoModal() != IDOK)
        return;
    if (!addLink(session_.study(), dialog.GetGains(), baseNameOf(dialog.GetFile()), error) ||
        !session_.startResidual(error))
        complain(error);
}

}  // namespace pavane

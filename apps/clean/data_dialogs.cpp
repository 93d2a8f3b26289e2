// Dialogs that need to know the data: their selection, files of gains.
#include "apps/clean/CalibrationRun.h"
#include "apps/clean/ChildTalk.h"
#include "apps/clean/CleanWindow.h"
#include "apps/clean/h5_form.h"
#include "pavane/dialogs/AGainFilesDlg.h"
#include "pavane/dialogs/clean/ACleanSelectionPage.h"
#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "platform/message.h"
#include "tessel/folders.h"
#include "tessel/gains/gain_files.h"
#include "tessel/paths.h"
#include "tessel/uvfits/AUVXFile.h"
#include "tessel/value_text.h"

#include <filesystem>

namespace pavane
{

namespace
{

/// "1.24 GB".
CString bytesText(double bytes)
{
    constexpr int digits = 3;
    constexpr double mega = 1e6, giga = 1e9;
    const int isGiga = bytes >= giga;
    return valToStr(bytes / (isGiga ? giga : mega), digits) + (isGiga ? " GB" : " MB");
}

}  // namespace

/// Of a MeasurementSet a working copy is made: the user is told how large it will be and how much
/// is free, and may say no, which leaves no study behind.
int CleanWindow::mayImport()
{
    AStudy& study = session_.study();
    if (study.hasData() || !IsFolderExists(study.source()))
        return 1;
    std::vector<std::string> words = session_.dataProgram(), lines;
    words.insert(words.end(), {"facts", study.source()});
    std::string error;
    const int isRead = runChild(words, "Looking at the data", this, lines, error);
    double size = 0;
    std::string leftOut;
    for (const std::string& line : lines) {
        if (line.compare(0, 5, "size ") == 0)
            (void)stoval(line.substr(5), size);
        if (line.compare(0, 9, "left-out ") == 0)
            leftOut = line.substr(9);
    }
    std::error_code unknown;
    const std::filesystem::space_info space = std::filesystem::space(study.folder(), unknown);
    const double free = unknown ? -1 : static_cast<double>(space.available);
    CString text = "A working copy of " + study.source() + " is made in " + study.folder() + ": ";
    text += "about " + bytesText(size) + ", and at most as much again as UVFITS for plots; " +
            (free < 0 ? CString("how much is free is not known") : bytesText(free) + " are free") +
            ". The MeasurementSet itself stays as it is.";
    if (!leftOut.empty())
        text += "\n\nWithout rows that cannot be taken: " + leftOut + ".";
    const int fits = free < 0 || 2 * size < free;
    if (!isRead)
        complain(error);
    else if (!fits)
        complain(text + "\n\nThat does not fit.");
    else if (AfxMessageBox(text + "\n\nMake it?", MB_YESNO | MB_ICONQUESTION) == IDYES) {
        session_.leavesOut = session_.leavesOut || !leftOut.empty();
        return 1;
    }
    session_.close();  // a study made a moment ago goes with it
    updateTitle();
    return 0;
}

/// The import failed for rows that cannot be taken, and the user wants the others. Non-zero when it
/// has begun once more.
int CleanWindow::importsWithout(const CString& error)
{
    const std::size_t offer = error.find("; --leave-out");
    if (offer == CString::npos || session_.leavesOut || session_.study().hasData() ||
        AfxMessageBox(error.substr(0, offer) + ".\n\nOpen the data without them?",
                      MB_YESNO | MB_ICONQUESTION) != IDYES)
        return 0;
    session_.leavesOut = 1;
    std::string fault;
    if (session_.startImport(fault))
        return 1;
    complain(fault);
    return 0;
}

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

// The chain of gains: its dialog, and what follows from it.
#include "apps/clean/CalibrationRun.h"
#include "apps/clean/ChainDialog.h"
#include "apps/clean/CleanWindow.h"
#include "pavane/dialogs/values/AUVXTIntervalPM.h"
#include "pavane/dialogs/values/gain_match.h"
#include "platform/file_dialog.h"
#include "platform/message.h"
#include "tessel/folders.h"
#include "tessel/gains/gain_files.h"
#include "tessel/paths.h"

namespace pavane
{

/// Gains of the chain that the chosen round of another study has; they are compared with the data
/// as files of gains are. Non-zero when some were added.
int CleanWindow::copyGains(CWnd& dialog, ChainEdits& edits)
{
    CString name = folderOf(session_.data());
    const HWND owner = dialog.GetSafeHwnd();
    if (!fnFileDialog1(name, "Studies (study.txt)|study.txt|", "Copy gains of a study", 1, "txt",
                       OFN_FILEMUSTEXIST, &dialog) ||
        name.empty() || CWnd::FromHandle(owner) != &dialog)
        return 0;
    const std::string folder = plainPath(folderOf(name));
    AStudy& study = session_.study();
    if (folder == study.folder())
        return complain("That is the study which is open: take the chain of a round"), 0;
    AStudy other;
    const StudyOpening opening = other.open(folder);
    if (opening != StudyOpening::opened && opening != StudyOpening::readOnly)
        return complain(folder + ": " +
                        (opening == StudyOpening::failed
                             ? other.fault()
                             : "a program has it open, or left it so: open it by itself first")),
               0;
    AUVXFile data;
    std::string error;
    if (!data.open(study.uvfitsFile(), error))
        return complain(study.uvfitsFile() + ": " + error), 0;
    const GainFacts facts = gainFactsOf(data, AUVXTIntervalPM(data, -1, -1));
    int count = 0;
    for (const StudyLink& link : other.settings().chain) {
        AGains gains;
        if (!readGainText(other.gainText(link.gains), gains, error))
            return complain(other.gainText(link.gains) + ": " + error), count;
        const GainMatch match = gainMatch(gains, facts);
        if (!match.isUsable())
            return complain("\"" + link.name + "\" cannot be used: " + match.faults.front()), count;
        if (!match.notes.empty() && AfxMessageBox("\"" + link.name + "\": " + match.notes.front() +
                                                      "\n\nTake it all the same?",
                                                  MB_YESNO | MB_ICONQUESTION) != IDYES)
            continue;
        const int number = keepGains(study, gains, error);
        if (number == 0)
            return complain(error), count;
        (void)edits.add(number, link.name + " of " + baseNameOf(folder));
        (void)edits.setOn(edits.chain().size() - 1, link.isOn);
        ++count;
    }
    if (count == 0)
        complain(folder + ": its chain has no gains");
    return count;
}

void CleanWindow::askChain()
{
    if (!session_.isOpen() || session_.isRunning() || session_.study().isReadOnly())
        return;
    chain_.follow(session_.study().settings().chain, "Gains that were solved for or read");
    const ChainEdits kept = chain_;
    ChainDialog dialog(chain_, session_.study(), this);
    dialog.copyFromStudy = [this](CWnd& owner, ChainEdits& edits) {
        return copyGains(owner, edits);
    };
    if (dialog.DoModal() != IDOK) {
        chain_ = kept;
        return;
    }
    const DataState before = session_.study().dataState();
    if (!takeChain())
        return;
    const int link = dialog.link();
    const std::vector<StudyLink>& chain = session_.study().settings().chain;
    const int id =
        link >= 0 && link < std::ssize(chain) ? chain[static_cast<std::size_t>(link)].id : 0;
    if (dialog.wish() == ChainDialog::Wish::solve && id > 0 && selfCalibrate(id))
        return;  // the residual on its gains follows
    std::string error;
    if (session_.study().dataState() != before && session_.shown() >= 0 &&
        !session_.startResidual(error))
        complain(error);
    if (dialog.wish() == ChainDialog::Wish::graph) {
        shownLink_ = id;
        showGains(GainWindows::Kind::graph);
    }
}

/// The chain as it was edited becomes the study's. Non-zero on success.
int CleanWindow::takeChain()
{
    AStudy& study = session_.study();
    StudySettings settings = study.settings();
    settings.chain = chain_.chain();
    if (!study.setSettings(settings))
        return complain(study.fault()), 0;
    tellOfChain();
    return 1;
}

/// Tells of links that were solved on other data.
void CleanWindow::tellOfChain()
{
    const std::vector<StudyLink>& chain = session_.study().settings().chain;
    CString stale;
    for (std::size_t i = 0; i < chain.size(); ++i)
        if (chain[i].isOn && isStale(chain, i))
            stale += (stale.empty() ? "\"" : ", \"") + chain[i].name + "\"";
    if (!stale.empty())
        status_.SetMessage(stale + " solved on other data: Shift+F8 shows the chain");
}

}  // namespace pavane

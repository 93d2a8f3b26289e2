#pragma once

#include "pavane/calibration/EditedVisibilities.h"
#include "pavane/progress/AProgress.h"
#include "pavane/tables/components/AComponents.h"
#include "platform/CWnd.h"
#include "tessel/uvfits/AUVXFile.h"

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

class CleanSession;
class DataPlotWindow;
struct DataState;

/// Which visibilities plots show.
enum class PlotSource : int {
    original,   ///< as the user's file has them
    corrected,  ///< by the chain of now
    round       ///< by the chain, and with the flags, of the shown round
};

/// The plots of a study's visibilities in windows of their own, and the flags of now, which are
/// edited there: what they come to is kept in the study soon after each edit, and the next round is
/// made with it. The user's file is not written.
class DataPlots
{
public:
    enum class Kind : std::size_t { distance, time, closure };
    static constexpr std::size_t kinds = 3;
    /// Of `modelRound`.
    static constexpr int noModel = -1, shownModel = -2;

    explicit DataPlots(CleanSession& session);
    DataPlots(const DataPlots&) = delete;
    DataPlots& operator=(const DataPlots&) = delete;
    ~DataPlots();

    std::function<void(const CString& error)> complain;
    /// Something that the user should read, of commands of the main window.
    std::function<void(const CString& text)> notice;

    /// Runs a command of data_plot_menu.h for a window, to which dialogs belong; 0 when it is none
    /// of these.
    int run(unsigned id, CWnd* owner);
    int show(Kind kind, CWnd* owner);
    /// Closes all windows and forgets study and flags; edits are kept before.
    void close();
    /// Another round is shown, there are others, or work has ended.
    void studyChanged();
    /// Puts the flags into the study as they are now, when they are others and nothing runs there,
    /// or what runs is given up.
    void keepFlags(int isLeaving = 0);

    // For the windows
    CleanSession& session() { return session_; }
    const CleanSession& session() const { return session_; }
    PlotSource source() const { return source_; }
    void setSource(PlotSource source);
    int modelRound() const { return modelRound_; }
    void setModelRound(int round);
    /// The round whose model is shown, noModel for none.
    int modelOfNow() const;
    /// Flags of now, or of the round that is shown and fixed.
    EditedVisibilities& shown() { return source_ == PlotSource::round ? past_ : data_; }
    const EditedVisibilities& shown() const { return source_ == PlotSource::round ? past_ : data_; }
    int isFixed() const;
    /// Opens the visibilities as the windows show them; `withFlags`: without what is flagged. 0 and
    /// told when that cannot be.
    int openData(AUVXFile& file, int withFlags);
    /// The components of the model; none, and told in a status line, where there are too many.
    AComponents model();
    const CString& modelNote() const { return modelNote_; }
    /// The model is one that the engine alone can make visibilities of.
    int canPredict() const;
    const AProgress& progress() const { return progress_; }
    int isReading() const { return shown().isBusy(); }
    void stopReading();
    /// A window has gone.
    void windowClosed();

private:
    class Runner;
    int isLoaded();
    void read();
    void applyModel();
    void begin(const char* text);
    void tick();
    void end();
    void dataChanged();
    int correct(AUVXFile& file, DataState state);
    int hasWindow() const;
    void tellWindows();
    void removeFlags(CWnd* owner);
    void tell(CWnd* owner, const CString& text);
    void openFlags(CWnd* owner);
    void saveFlags(CWnd* owner);
    void takeFlagsOfRound(CWnd* owner);
    void useFlags();
    void predictModel();
    int takePrediction();
    std::string predictionFile() const;
    std::string gainsOfNow() const;

    CleanSession& session_;
    AUVXFile file_, predicted_;
    EditedVisibilities data_;  ///< with the flags of now
    EditedVisibilities past_;  ///< with those of a round
    PlotSource source_ = PlotSource::corrected;
    int modelRound_ = shownModel;
    int readRound_ = -1;       ///< that `past_` is of
    int readModel_ = -1;       ///< whose model is shown
    int predictedRound_ = -1;  ///< whose model the engine is asked for
    std::string readGains_;    ///< what corrects the data that are shown
    CString modelNote_;
    int isLoaded_ = 0;
    unsigned keptVersion_ = 0;  ///< of the flags that the study has
    AProgress progress_;
    std::unique_ptr<AProgressWriter> writer_;
    int told_ = 0;
    long long shownAt_ = 0, pause_ = 0;  ///< milliseconds
    std::unique_ptr<Runner> runner_;
    std::array<std::unique_ptr<DataPlotWindow>, kinds> windows_;
};

}  // namespace pavane

// Maps made of the current one (moments, position-velocity, a larger beam, polarisation) and
// vectors of polarisation over it. A made map is a file before it is shown, so that none can be
// lost.
#include "apps/view/cubes/FieldDialog.h"
#include "apps/view/cubes/position_velocity.h"
#include "apps/view/file_ending.h"
#include "apps/view/long_work.h"
#include "apps/view/made_maps.h"
#include "apps/view/main_menu.h"
#include "apps/view/MainWindow.h"
#include "apps/view/paired_maps.h"
#include "apps/view/profiles/curves.h"
#include "platform/file_dialog.h"
#include "tessel/paths.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <memory>

namespace pavane
{

namespace
{

using Kind = DialogField::Kind;

constexpr const char* madeFilter = "FITS maps (*.fits)|*.fits|";
constexpr double masPerDegree = 3600e3;
constexpr int beamDigits = 6;

const std::vector<CString> momentNames = {"Integral over velocity (moment 0)",
                                          "Mean velocity (moment 1)",
                                          "Velocity dispersion (moment 2)", "Greatest value"};
const std::vector<CString> polarNames = {"Polarised intensity", "Degree of polarisation",
                                         "Angle of polarisation"};
const std::vector<CString> lengthNames = {"Degree of polarisation", "Polarised intensity"};

DialogField textField(const CString& label, const CString& value, const CString& entry = {})
{
    return {Kind::text, label, value, {}, entry};
}

DialogField choiceField(const CString& label, const std::vector<CString>& choices,
                        const CString& entry)
{
    return {Kind::choice, label, choices.front(), choices, entry};
}

std::string chosen(const DialogField& field, const std::vector<std::string>& words)
{
    const auto at = std::find(field.choices.begin(), field.choices.end(), field.value);
    const auto i = static_cast<std::size_t>(at - field.choices.begin());
    return words[std::min(i, words.size() - 1)];
}

/// What the command line would say, in the words of a dialog.
CString inDialog(std::string error)
{
    for (std::size_t at = 0; (at = error.find("--", at)) != std::string::npos;)
        error.erase(at, 2);
    if (!error.empty())
        error[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(error[0])));
    return error;
}

/// The options of the command line that a dialog stands for, checked as they are there; where the
/// map goes is asked for later.
int readWish(std::vector<std::string> arguments, const std::string& map, ViewOptions& wish,
             CString& error)
{
    arguments.insert(arguments.begin(), {"map.fits", "--batch", "--out", "made.fits"});
    std::string fault;
    if (!parseOptions(arguments, wish, fault)) {
        error = inDialog(fault);
        return 0;
    }
    wish.map = map;
    return 1;
}

std::string planesOf(const MapHeader& header)
{
    std::string text = "0-";
    return text.append(std::to_string(header.planes - 1));
}

/// Fields of the Stokes parameters Q and U.
void addStokesFields(std::vector<DialogField>& fields)
{
    fields.push_back({Kind::file, "Map of &Q:", "", {}, ""});
    fields.push_back({Kind::file, "Map of &U:", "", {}, ""});
}

void addStokes(const DialogField& q, const DialogField& u, std::vector<std::string>& arguments)
{
    if (!q.value.empty())
        arguments.insert(arguments.end(), {"--stokes-q", q.value});
    if (!u.value.empty())
        arguments.insert(arguments.end(), {"--stokes-u", u.value});
}

}  // namespace

/// Asks where a made map goes, and with `hasErrors` makes a name of its errors beside it.
int MainWindow::askMadeName(CWnd& dialog, const CString& ending, const CString& title,
                            ViewOptions& wish, int hasErrors)
{
    CString name = besideFile(map_->file(), ending);
    if (!fnFileDialog1(name, madeFilter, title, 0, "fits", OFN_OVERWRITEPROMPT, &dialog) ||
        name.empty() || !mayWrite(name, 0))
        return 0;
    wish.made.out = name;
    wish.made.errors.clear();
    if (!hasErrors)
        return 1;
    const CString errors = besideFile(name, "errors.fits");
    if (!mayWrite(errors, 0) ||
        (IsFileExists(errors) && AfxMessageBox(errors + " is there already. Replace it?",
                                               MB_YESNO | MB_ICONQUESTION) != IDYES))
        return 0;
    wish.made.errors = errors;
    return 1;
}

/// Makes and writes a map in front of the dialog that asked for it; 0 with an empty error when the
/// user gave up.
int MainWindow::makeOfMap(CWnd& dialog, const ViewOptions& wish, CString& error)
{
    MadeTold told;
    std::string fault;
    int isMade = 0;
    constexpr double making = 0.9;
    const auto work = [&](const ProgressFunction& tell) {
        if (wish.made.kind == MadeMapWish::Kind::positionVelocity) {
            PositionVelocityWish line{wish.map, wish.made.out, wish.made.line};
            line.line.across = wish.profile.line.across;
            line.firstPlane = wish.print.hasPlanes() ? wish.print.firstPlane : 0;
            line.lastPlane = wish.print.hasPlanes() ? wish.print.lastPlane : -1;
            return isMade = makePositionVelocity(line, told, fault, tell);
        }
        MadeMap made;
        return isMade = makeOfOne(wish, made, told, fault,
                                  [&](double part) { return tell(part * making); }) &&
                        saveMadeMap(wish, made, fault, [&](double part) {
                            return tell(making + part * (1 - making));
                        });
    };
    if (!doLongWork(&dialog, "Making " + baseNameOf(wish.made.out), work))
        return error.clear(), 0;
    error = fault;
    madeNote_ = told.notes.empty() ? "" : told.notes.front();
    return isMade;
}

/// The made map becomes one of the window.
void MainWindow::showMade(const ViewOptions& wish)
{
    if (!AddMap(wish.made.out, -1))
        return;
    view().SetFocus();  // the dialog that goes gives it back to the map before, which then shows
    std::string text = "Saved in " + wish.made.out;
    if (!wish.made.errors.empty())
        text.append(", its errors in ").append(baseNameOf(wish.made.errors));
    if (!madeNote_.empty())
        text.append(": ").append(madeNote_);
    status_.SetMessage(text);
}

void MainWindow::makeMoment()
{
    std::vector<DialogField> fields = {
        choiceField("&What:", momentNames, "Moment"),
        textField("&Planes from 0, A-B:", planesOf(map_->inputs().map.header)),
        textField("C&lip, times the noise:", "3", "MomentClip"),
        {Kind::check, "A map of the &errors too", "", {}, "MomentErrors"}};
    ViewOptions wish;
    const auto accept = [&](CWnd& dialog, CString& error) -> int {
        return readWish({"--moment", chosen(fields[0], {"0", "1", "2", "max"}), "--planes",
                         fields[1].value, "--clip", fields[2].value},
                        map_->file(), wish, error) &&
               askMadeName(dialog, "moment-" + chosen(fields[0], {"0", "1", "2", "max"}) + ".fits",
                           "Save the moment", wish, fields[3].value == "1") &&
               makeOfMap(dialog, wish, error);
    };
    if (askFields(this, "Moments of " + baseNameOf(map_->file()),
                  {"Cells of a plane count above the clip; 0: all of them."}, fields, accept))
        showMade(wish);
}

void MainWindow::makeVelocity()
{
    const ProfileLine& line = curves_.line().line();
    const AMatrix<float>& cells = map_->inputs().map.cells;
    ProfileLine across = line;
    if (line.corners.size() < 2)  // no profile was shown yet
        across.corners = {{cells.columns() * 0.25, cells.rows() * 0.5},
                          {cells.columns() * 0.75, cells.rows() * 0.5}};
    std::vector<DialogField> fields = {
        textField("&Line:", lineText(across)),
        textField("&Planes from 0, A-B:", planesOf(map_->inputs().map.header))};
    ViewOptions wish;
    const auto accept = [&](CWnd& dialog, CString& error) -> int {
        ProfileLine read;
        if (!readLine(fields[0].value, read))
            return error = "Not a line: X1,Y1,X2,Y2,WIDTH and mean, greatest or sum", 0;
        if (!readWish({"--pv", "1,1,2,2", "--planes", fields[1].value}, map_->file(), wish, error))
            return 0;
        wish.made.line = read;
        wish.profile.line.across = read.across;
        return askMadeName(dialog, "pv.fits", "Save the position-velocity map", wish, 0) &&
               makeOfMap(dialog, wish, error);
    };
    if (askFields(this, "Position-velocity map of " + baseNameOf(map_->file()),
                  {"Corners in pixels from 1, X1,Y1,X2,Y2,...; an odd number behind them",
                   "is the width in cells; then mean, greatest or sum across it."},
                  fields, accept))
        showMade(wish);
}

void MainWindow::makeSmooth()
{
    const MapHeader& header = map_->inputs().map.header;
    if (!header.hasBeam) {
        status_.SetMessage("The map has no beam that is known");
        return;
    }
    const auto inMas = [](double degrees) { return valToStr(degrees * masPerDegree, beamDigits); };
    std::vector<DialogField> fields = {
        textField("&Longer axis [mas]:", inMas(header.bmaj)),
        textField("&Shorter axis [mas]:", inMas(header.bmaj)),
        textField("&Angle [deg]:", valToStr(header.bpa, beamDigits))};
    ViewOptions wish;
    const auto accept = [&](CWnd& dialog, CString& error) -> int {
        std::vector<std::string> arguments = {"--smooth", fields[0].value + "," + fields[1].value +
                                                              "," + fields[2].value};
        if (map_->planes() > 1)
            arguments.insert(arguments.end(), {"--plane", std::to_string(map_->plane())});
        return readWish(arguments, map_->file(), wish, error) &&
               askMadeName(dialog, "smooth.fits", "Save the map with the larger beam", wish, 0) &&
               makeOfMap(dialog, wish, error);
    };
    const CString now = "The beam is " + inMas(header.bmaj) + " x " + inMas(header.bmin) +
                        " mas, " + valToStr(header.bpa, beamDigits) + " deg.";
    if (askFields(this, "Larger beam of " + baseNameOf(map_->file()), {now}, fields, accept))
        showMade(wish);
}

void MainWindow::makePolarisation()
{
    std::vector<DialogField> fields = {
        choiceField("&What:", polarNames, "Polarisation"),
        textField("C&lip, times the noise:", "3", "PolarClip"),
        {Kind::check, "A map of the &errors too", "", {}, "PolarErrors"}};
    addStokesFields(fields);
    ViewOptions wish;
    const auto accept = [&](CWnd& dialog, CString& error) -> int {
        const std::string kind = chosen(fields[0], {"intensity", "degree", "angle"});
        std::vector<std::string> arguments = {"--polarisation", kind, "--clip", fields[1].value};
        if (map_->planes() > 1)
            arguments.insert(arguments.end(), {"--plane", std::to_string(map_->plane())});
        addStokes(fields[3], fields[4], arguments);
        return readWish(arguments, map_->file(), wish, error) &&
               askMadeName(dialog, "polarised-" + kind + ".fits", "Save the polarisation", wish,
                           fields[2].value == "1") &&
               makeOfMap(dialog, wish, error);
    };
    if (askFields(this, "Polarisation of " + baseNameOf(map_->file()),
                  {"Without names Q and U are planes of the map's own file."}, fields, accept))
        showMade(wish);
}

/// Vectors over the map; takes them away when there are some.
void MainWindow::toggleVectors()
{
    const auto show = [this](const CString& told) {
        view().ContentChanged();
        displayChanged();
        status_.SetMessage(told);
    };
    if (map_->hasVectors()) {
        map_->clearVectors();
        return show("No vectors of polarisation");
    }
    std::vector<DialogField> fields = {choiceField("&Length:", lengthNames, "VectorLength"),
                                       textField("&Cut, times the noise:", "3", "VectorClip"),
                                       textField("&Scale of the length:", "1", "VectorScale")};
    addStokesFields(fields);
    const auto accept = [&](CWnd& dialog, CString& error) -> int {
        constexpr double most = 100;
        double scale = 0;
        if (!stoval(fields[2].value, scale) || !(scale >= 1 / most && scale <= most))
            return error = "The scale is a number from 0.01 to 100, 1 the usual length", 0;
        std::vector<std::string> arguments = {
            "--vectors", chosen(fields[0], {"degree", "intensity"}), "--clip", fields[1].value};
        addStokes(fields[3], fields[4], arguments);
        ViewOptions wish;
        std::string fault;
        arguments.insert(arguments.begin(), {"map.fits", "--batch", "--png", "a.png"});
        if (!parseOptions(arguments, wish, fault))
            return error = inDialog(fault), 0;
        const int isShown = map_->setVectors(&dialog, wish, scale, fault);
        error = fault;
        return isShown;
    };
    if (askFields(this, "Vectors of polarisation",
                  {"Without names Q and U are planes of the map's own file."}, fields, accept,
                  "Show"))
        show("Vectors of polarisation: V takes them away");
}

int MainWindow::runMakeCommand(unsigned id)
{
    if (id < idMakeMoment || id > idVectors)
        return 0;
    if (!map_) {
        status_.SetMessage("No map is open: Ctrl+O opens one");
        return 1;
    }
    if ((id == idMakeMoment || id == idMakeVelocity) && !isCube()) {
        status_.SetMessage("The map is no cube: it has one plane");
        return 1;
    }
    switch (id) {
    case idMakeMoment:
        return makeMoment(), 1;
    case idMakeSmooth:
        return makeSmooth(), 1;
    case idMakePolarisation:
        return makePolarisation(), 1;
    case idMakeVelocity:
        return makeVelocity(), 1;
    default:
        return toggleVectors(), 1;
    }
}

void MainWindow::showMakeCommands(CMenu& popup)
{
    for (CMenu::Line& line : popup.lines()) {
        if (line.id < idMakeMoment || line.id > idVectors)
            continue;
        line.enabled = map_ && (isCube() || (line.id != idMakeMoment && line.id != idMakeVelocity));
        line.checked = line.id == idVectors && map_ && map_->hasVectors();
    }
}

}  // namespace pavane

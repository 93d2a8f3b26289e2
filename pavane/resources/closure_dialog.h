#pragma once

#include "platform/dialog_template.h"
#include "platform/message.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The dialog that chooses triangles for closure phases.
inline constexpr unsigned IDD_CLOSURE_SELECT = 10680;
inline constexpr unsigned IDC_CLOSURE_TELESCOPES = 10681, IDC_CLOSURE_KIND = 10682,
                          IDC_CLOSURE_SEARCH = 10683, IDC_CLOSURE_TRIANGLES = 10684,
                          IDC_CLOSURE_ALL = 10685, IDC_CLOSURE_NONE = 10686,
                          IDC_CLOSURE_INVERT = 10687, IDC_CLOSURE_COUNT = 10688,
                          IDC_CLOSURE_SEARCH_LABEL = 10689, IDC_CLOSURE_REFERENCE = 10690,
                          IDC_CLOSURE_SECONDS = 10691, IDC_CLOSURE_EACH_IF = 10692,
                          IDC_CLOSURE_EACH_STOKES = 10693, IDC_CLOSURE_SECONDS_LABEL = 10694,
                          IDC_CLOSURE_SECONDS_UNIT = 10695;

inline constexpr DlgItem closureSelectItems[] = {
    {ControlKind::staticText, 0, "&Telescopes:", 8, 8, 96, 10},
    {ControlKind::placeholder, IDC_CLOSURE_TELESCOPES, "", 8, 20, 96, 176, WS_TABSTOP},
    {ControlKind::staticText, 0, "S&how:", 112, 10, 24, 10},
    {ControlKind::comboBox, IDC_CLOSURE_KIND, "", 138, 8, 116, 80, WS_TABSTOP},
    {ControlKind::staticText, IDC_CLOSURE_SEARCH_LABEL, "&Search:", 264, 10, 30, 10},
    {ControlKind::edit, IDC_CLOSURE_SEARCH, "", 296, 8, 96, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Reference:", 112, 28, 40, 10},
    {ControlKind::comboBox, IDC_CLOSURE_REFERENCE, "", 154, 26, 100, 120, WS_TABSTOP},
    {ControlKind::placeholder, IDC_CLOSURE_TRIANGLES, "", 112, 44, 280, 152, WS_TABSTOP},
    {ControlKind::pushButton, IDC_CLOSURE_ALL, "&All", 112, 200, 40, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_CLOSURE_NONE, "&None", 156, 200, 40, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDC_CLOSURE_INVERT, "&Invert", 200, 200, 40, 14, WS_TABSTOP},
    {ControlKind::staticText, IDC_CLOSURE_COUNT, "", 248, 203, 144, 10},
    {ControlKind::staticText, IDC_CLOSURE_SECONDS_LABEL, "A&verage over:", 8, 225, 50, 10},
    {ControlKind::edit, IDC_CLOSURE_SECONDS, "", 60, 222, 36, 13, WS_TABSTOP},
    {ControlKind::staticText, IDC_CLOSURE_SECONDS_UNIT, "s", 100, 225, 8, 10},
    {ControlKind::checkBox, IDC_CLOSURE_EACH_IF, "Each I&F by itself", 116, 223, 72, 11,
     WS_TABSTOP},
    {ControlKind::checkBox, IDC_CLOSURE_EACH_STOKES, "Each &polarisation", 192, 223, 80, 11,
     WS_TABSTOP},
    {ControlKind::defaultButton, IDOK, "OK", 288, 222, 50, 14, WS_TABSTOP},
    {ControlKind::pushButton, IDCANCEL, "Cancel", 342, 222, 50, 14, WS_TABSTOP},
};

inline constexpr DlgTemplate closureSelectDialog = {IDD_CLOSURE_SELECT,
                                                    "Closure triangles",
                                                    400,
                                                    242,
                                                    closureSelectItems,
                                                    static_cast<int>(std::size(closureSelectItems)),
                                                    WS_THICKFRAME};

/// What the list of triangles shows, in the order of the kinds there.
inline constexpr const char* closureKinds[] = {"All triangles", "An independent set",
                                               "Those with the reference telescope"};
inline constexpr const char* closureTitles[] = {"Triangle", "Points", "Mean [\u00b0]",
                                                "Scatter [\u00b0]", "Remark"};
inline constexpr const char* closureTips[] = {
    "Three telescopes that are all joined", "Closure phases, one for each time with all three legs",
    "Of the directions on the circle", "Root mean square about the mean",
    "Triangles with two telescopes less than 10 km apart tell little of the source"};
inline constexpr const char* trivialText = "trivial: within 10 km";
inline constexpr const char* noTrianglesChosen = "No triangle is marked.";
inline constexpr const char* noSecondsGiven =
    "Averages are over a number of seconds, or of single times where none is given.";

}  // namespace pavane

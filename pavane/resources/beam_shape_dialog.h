#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "pavane/resources/map_display_ids.h"
#include "platform/dialog_template.h"
#include "platform/messages.h"

#include <iterator>

namespace pavane
{

// The page "Beam shape"; its numbers are the controls of every dialog with a beam.
inline constexpr unsigned IDD_BEAM_SHAPE = 10820;
inline constexpr unsigned IDC_SHAPE_KIND = 10821, IDC_SHAPE_FITTED_TEXT = 10822,
                          IDC_SHAPE_NOTE = 10823;

inline constexpr const char* beamShapeTitle = "Beam shape";

inline constexpr DlgItem beamShapeItems[] = {
    {ControlKind::staticText, 0, "&Shape", 8, 12, 40, 9},
    {ControlKind::comboBox, IDC_SHAPE_KIND, "", 52, 10, 82, 60, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Major", 8, 32, 40, 9},
    {ControlKind::edit, IDC_BEAM_MAJOR, "", 52, 30, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "M&inor", 8, 50, 40, 9},
    {ControlKind::edit, IDC_BEAM_MINOR, "", 52, 48, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "&Unit", 8, 68, 40, 9},
    {ControlKind::comboBox, IDC_BEAM_UNIT, "", 52, 66, 82, 80, WS_TABSTOP},
    {ControlKind::staticText, 0, "An&gle", 8, 86, 40, 9},
    {ControlKind::edit, IDC_BEAM_ANGLE, "", 52, 84, 52, 13, WS_TABSTOP},
    {ControlKind::staticText, 0, "deg", 108, 86, 20, 9},
    {ControlKind::pushButton, IDC_BEAM_FIT, "&Fit", 52, 102, 82, 14, WS_TABSTOP},
    {ControlKind::placeholder, IDC_BEAM_VIEW, "", 144, 10, 110, 106},
    {ControlKind::staticText, IDC_SHAPE_FITTED_TEXT, "", 8, 124, 246, 9},
    {ControlKind::staticText, IDC_SHAPE_NOTE, "", 8, 136, 246, 9},
};
inline constexpr ResizeItem beamShapeResize[] = {
    {IDC_BEAM_VIEW, 0, 0, 100, 100},
    {IDC_SHAPE_FITTED_TEXT, 0, 100, 100, 100},
    {IDC_SHAPE_NOTE, 0, 100, 100, 100},
};
inline constexpr DlgTemplate beamShapePage = {IDD_BEAM_SHAPE,
                                              beamShapeTitle,
                                              262,
                                              150,
                                              beamShapeItems,
                                              static_cast<int>(std::size(beamShapeItems))};

inline constexpr const char* beamKindTexts[] = {"Fitted", "Circular", "As typed"};
inline constexpr const char* noFittedBeamText = "There is no dirty beam that a Gaussian fits yet.";

}  // namespace pavane

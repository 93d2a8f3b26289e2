#pragma once

namespace pavane
{

// What the sheet of a map's display and the dialogs of beams say.
inline constexpr const char* displaySheetTitle = "Map display";
inline constexpr const char* displayNoNumberText = "That is no number";
inline constexpr const char* displayRangeText = "Low has to lie below high";
inline constexpr const char* displayPlayText = "Gamma has to lie above 0";
inline constexpr const char* displayLevelsText =
    "Levels are numbers with commas between them, 250 at most";
inline constexpr const char* displayWidthText = "The width has to be 0 to 20 pixels";
inline constexpr const char* displayBeamSizeText = "Major and minor have to lie above 0";
inline constexpr const char* displayBeamOrderText = "The minor axis is longer than the major one";
inline constexpr const char* displayTitleText = "A title has at most 400 characters";

inline constexpr const char* presetNameText = "A name has 1 to 60 characters and no '|' among them";
inline constexpr const char* presetsFullText = "There are 50 presets already";
inline constexpr const char* noPresetText = "Choose a preset first";
inline constexpr const char* presetNotKeptText = "The profile cannot be written";
inline constexpr const char* presetKeptText = "Kept";

inline constexpr const char* noDirtyBeamText = "There is no dirty beam to fit";
inline constexpr const char* noBeamFitText =
    "The main lobe is too small, or reaches the edge of the dirty beam";

inline constexpr const char* levelUnitTexts[] = {"Automatic", "Values of the map",
                                                 "Per cent of the peak", "Times the noise", "None"};
inline constexpr const char* beamFillTexts[] = {"Hatched", "Filled", "Outline", "None"};
inline constexpr const char* beamCornerTexts[] = {"Lower left", "Lower right", "Upper left",
                                                  "Upper right"};
inline constexpr const char* beamUnitTexts[] = {"mas", "arcsec", "arcmin", "deg"};
inline constexpr const char* beamAxisUnitText = "of the axes";
inline constexpr const char* automaticColourText = "Whichever stands out";
inline constexpr const char* ownColourText = "Another colour";
inline constexpr const char* contourColourTitle = "Colour of contours";
inline constexpr const char* noBeamShapeText = "The map has no value above 0: it is no dirty beam";
inline constexpr const char* noBeamWindowText = "The window cannot be made";
inline constexpr const char* beamTableTitles[] = {"Of the dirty beam", "Value", "Unit"};
inline constexpr const char* majorCutText = "major axis";
inline constexpr const char* majorFitText = "major, fitted";
inline constexpr const char* minorCutText = "minor axis";
inline constexpr const char* minorFitText = "minor, fitted";
inline constexpr const char* fromPeakText = "Distance from the peak";
inline constexpr const char* beamViewName = "Beam";

}  // namespace pavane

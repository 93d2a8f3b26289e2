#pragma once

namespace pavane
{

// What the dialog of palette play says.
inline constexpr const char* noCellsText = "no cells";
inline constexpr const char* histogramName = "Histogram";
inline constexpr const char* lowEndName = "Low end of the range";
inline constexpr const char* highEndName = "High end of the range";
inline constexpr const char* curveName = "Transfer curve";
inline constexpr const char* contrastText = "contrast ";
inline constexpr const char* biasText = ", bias ";
inline constexpr const char* curveKeys =
    "Left and Right move the bias, Up and Down the contrast; with Shift ten steps";
inline constexpr const char* handleKeys = "arrows move it, with Shift ten steps";

inline constexpr const char* scaleTexts[] = {"Linear", "Square root", "Logarithm", "Equal shares"};
inline constexpr const char* cellsTexts[] = {"Whole map", "Cells in view", "Cells of areas",
                                             "All planes"};
inline constexpr const char* palettesName = "Palette";
inline constexpr const char* sharedPaletteText = "As all maps";
inline constexpr const char* ownPaletteText = "Own colours";
inline constexpr const char* colorBlindSafeText = " (colour-blind safe)";

inline constexpr const char* planesText = "Counting the cells of all planes";
inline constexpr const char* planesLeftText = "Given up; the cells are those of this plane";
inline constexpr const char* noNumberText = "That is no number";
inline constexpr const char* rangeOrderText = "Low has to lie below high";
inline constexpr const char* gammaText = "Gamma has to lie above 0";
inline constexpr const char* savePaletteTitle = "Save palette as";
inline constexpr const char* paletteFilter = "Palettes (*.pal)|*.pal";

}  // namespace pavane

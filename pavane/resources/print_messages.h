#pragma once

namespace pavane
{

// A range of pages that cannot be printed; numbers follow, with the second text between them.
inline constexpr const char* notInPageRange =
    "This value is no within the page range.\nEnter a number between ";
inline constexpr const char* pageRangeAnd = " and ";

/// The button for all pages when there is one; with several their number stands inside.
inline constexpr const char* allPages = "&All";
inline constexpr const char* allPagesStart = "&All ";
inline constexpr const char* allPagesEnd = " pages";

// Margins and papers that leave no page. Lengths in millimetres stand in or behind the texts.
inline constexpr const char* marginSides[] = {"left", "top", "right", "bottom"};
inline constexpr const char* marginBelowLeast = " margin must be at least ";
inline constexpr const char* noPrintableArea =
    "The margins must leave an area of at least 10 mm by 10 mm on the paper.";
inline constexpr const char* noPaper = "The paper has no size.";

}  // namespace pavane

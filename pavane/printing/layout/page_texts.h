#pragma once

#include "pavane/printing/layout/APrnAddInfo.h"
#include "platform/geometry.h"
#include "platform/types.h"

#include <string_view>

namespace pavane
{

/// Measures texts in the font of captions, logical units.
class TextRuler
{
public:
    virtual ~TextRuler() = default;
    /// Of a piece of a line.
    virtual int widthOf(std::string_view text) = 0;
    virtual int lineHeight() = 0;
};

/// Where everything of a page stands. A rectangle is empty for what the page is without.
struct PageTexts {
    CRect numberBand;
    CString number;  ///< right-aligned and centred vertically in its band
    CRect caption;
    CString captionText;  ///< its lines, each within the width, with line breaks between them
    unsigned captionFormat = 0;  ///< for DrawText
    CRect picture;               ///< what is left for the window; all zero when nothing is
};

/// Lays out page `page` (from 1) inside `rect`. `height` is that of the cells of the default font.
/// A caption takes half of the rectangle at most; a longer one ends in "...", and one for which not
/// a line has room is left out.
PAVANE_API PageTexts layOutPage(const CRect& rect, int height, const APrnAddInfo& info, int page,
                                TextRuler& ruler);

/// The number in the band of a page: "3. ", but " " on the page whose number is 1.
PAVANE_API CString pageNumberText(int firstNumber, int page);

/// The lines of a text broken at blanks, in words wider than `width` between characters; at most
/// `most` of them, the last with "..." where something is left out. None when not a character and
/// the dots fit the width.
PAVANE_API CString wrappedText(std::string_view text, int width, int most, TextRuler& ruler,
                               int& lines);

/// Characters of a text; a byte that is no part of one counts as one.
PAVANE_API int characterCount(std::string_view text);

/// A title for a spooler: at most 31 characters, line breaks and other control characters blanks.
PAVANE_API CString documentTitle(const CString& title);

}  // namespace pavane

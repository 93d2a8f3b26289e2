#pragma once

#include "platform/geometry.h"
#include "platform/types.h"

#include <functional>
#include <string_view>
#include <vector>

namespace pavane
{

/// A line of text and the top left corner of its first cell.
struct TextLine {
    CPoint at;
    CString text;
};

/// The lines of a text and the room that they take, logical units.
struct TextLayout {
    std::vector<TextLine> lines;  ///< lines without a character have a place as well
    int width = 0;                ///< of the widest line
    int height = 0;               ///< of all lines
};

/// Places `text` in `rect` by the DT_* rules of `format`: lines end at "\n" or "\r\n" unless
/// DT_SINGLELINE; '&' is dropped and "&&" gives '&' unless DT_NOPREFIX; DT_WORDBREAK breaks at
/// blanks and keeps a word that is too long whole; DT_END_ELLIPSIS ends what does not fit in "...".
/// `lineHeight` is the height of a cell and `widthOf` measures a piece.
TextLayout layOutText(std::string_view text, const CRect& rect, unsigned format, int lineHeight,
                      const std::function<int(std::string_view)>& widthOf);

}  // namespace pavane

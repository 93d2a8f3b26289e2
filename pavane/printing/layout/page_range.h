#pragma once

#include "platform/types.h"

#include <cstdint>

namespace pavane
{

/// The number in an edit: 0 when there is no whole one, the nearest int to one beyond.
PAVANE_API int pageEditValue(const CString& text);

/// Where the focus goes when a range is refused.
enum class RangeField { none, from, to };

struct RangeCheck {
    RangeField focus = RangeField::none;  ///< none: the range can be printed
    CString message;
};
/// Whether the pages `from` to `to` lie between `minimum` and `maximum`. The rule for `from` comes
/// first, and one message is all.
PAVANE_API RangeCheck checkPageRange(int from, int to, int minimum, int maximum);

/// The range controls of the print dialog.
struct RangeControls {
    int maximum = 1;  ///< pages of the document, as the dialog knows them
    int from = 1, to = 1;
    int all = 1, pages = 0;  ///< the two radio buttons
    CString allLabel;        ///< of the first one
    int rangeEnabled = 0;    ///< "Pages", both edits and their labels
    int pageNumber = 0;      ///< check box of the page number, and whether its button is enabled
};
/// The controls at the start for `pages` pages, below 1 as 1: all of them. The page number is the
/// print-out's.
PAVANE_API RangeControls openedControls(int pages, int pageNumber);
/// The controls when printer, paper or margins have changed the number of pages to `pages`. Does
/// nothing when it is what it was.
PAVANE_API void countAgain(RangeControls& controls, int pages);

/// The pages of a job in the order in which they are printed; from the greater to the smaller when
/// they were given so. A range that ends with page 65535 goes on until the print-out stops.
class PAVANE_API JobPages
{
public:
    /// Both ends are brought into `minimum` to `maximum`.
    JobPages(int from, int to, int minimum, int maximum);
    int more() const { return left_ != 0; }
    /// While there are more.
    int page() const { return page_; }
    void next();
    /// Non-zero when only the print-out knows the end.
    int isOpen() const { return open_; }
    /// Of a range with an end, from its first page on.
    std::int64_t count() const { return count_; }

private:
    int page_, step_, open_;
    std::int64_t count_, left_;
};

/// A document that is several sheets wide: its pages run down, then across.
struct PAVANE_API PageGrid {
    int down = 1, across = 1;
    struct Place {
        int down = 0, across = 0;  ///< from 0
    };
    /// All pages, as many as an int counts.
    int count() const;
    /// Of a page from 1 on; of another the nearest one's.
    Place placeOf(int page) const;
};

}  // namespace pavane

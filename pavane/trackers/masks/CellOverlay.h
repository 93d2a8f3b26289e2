#pragma once

#include "pavane/containers/Pile.h"
#include "pavane/trackers/masks/CellSums.h"
#include "platform/api.h"
#include "platform/geometry.h"
#include "tessel/ABitMatrix.h"
#include "tessel/AMatrixRect.h"

#include <cstdint>

namespace pavane
{

class AMatrixAccess;

/// How many cells are set and the sum of the map's values in them; blank cells count and add
/// nothing. The sum divided by the beam's area in cells is the flux.
struct CellSum {
    std::int64_t cells = 0;
    double sum = 0;
};

/// The cells that the mask of all areas sets, kept up to date while areas change. At any time the
/// mask is the one that filling all areas from nothing gives (AAreaBitFill for each into a cleared
/// matrix, then those of never-clean areas cleared; every bit 1 before that when there is no other
/// area). A change costs what lies in the boxes of the
/// area before and after it: those rows and columns are cleared and every area that meets them is
/// filled again. While one area is changed again and again, as in a drag, the mask of the others is
/// kept, and a change costs that area alone (not while there are never-clean areas).
///
/// Sums of values depend on the mask alone, not on the way to it; see CellSums.
class PAVANE_API CellOverlay
{
public:
    CellOverlay() = default;
    CellOverlay(const CellOverlay&) = delete;
    CellOverlay& operator=(const CellOverlay&) = delete;
    ~CellOverlay();

    /// Another map: its cells, not owned, which have to outlive the overlay or the next `setMap`.
    /// Areas are gone. 0 without memory.
    int setMap(const AMatrixAccess& values);
    /// The same for a map of which only the size is known: sums stay 0.
    int setSize(int rows, int columns);
    /// The values have changed, the size has not.
    void valuesChanged() { sums_.valuesChanged(); }

    /// The polygons of the areas in cells (x = column, y = row), in index order; copied. An area
    /// without points counts as an area; `isNeverClean`: its cells are left out. All return 0
    /// without memory: there are no areas then.
    int areas() const { return static_cast<int>(areas_.count()); }
    int append(const CPoint* points, int n, int isNeverClean = 0);
    int insert(int area, const CPoint* points, int n, int isNeverClean = 0);
    int replace(int area, const CPoint* points, int n, int isNeverClean = 0);
    int remove(int area);
    int clear();
    /// Between these two, areas change without the mask, which `end` brings up to date in one go:
    /// for many areas at once.
    void begin() { gathering_ = true; }
    int end();

    const ABitMatrix& mask() const { return mask_; }
    /// Of the whole mask.
    CellSum total();
    /// Of one area's own cells, whether others have them too or not.
    CellSum ofArea(int area);
    /// The cells that changed since the last call, as the smallest block that holds them.
    AMatrixRect takeChanged();

private:
    struct Area {
        CPoint* points;
        int n;
        CRect box;  // the cells of the map that it can set, right and bottom excluded
        int isNeverClean;
    };

    int makeArea(const CPoint* points, int n, int isNeverClean, Area& area) const;
    int countNever();
    int makeOthers();
    int fill(ABitMatrix& mask, const Area& area) const;
    int fillMeeting(ABitMatrix& mask, const CRect& block, int without) const;
    int fillKind(ABitMatrix& mask, const CRect& cleared, int without, int isNeverClean) const;
    int refillWithNever(const CRect& block);
    /// Brings the mask up to date where an area has come, changed or gone.
    int changed(const CRect& before, const CRect& after);
    int refill(const CRect& a, const CRect& b);
    int refill(const CRect& block);
    int lift(int area);
    void compare(const CRect& block);
    void noteChange(int row, std::int64_t word, ABitMatrix::Word bits);
    void dropAreas();
    int fail();
    CRect wholeMap() const { return {0, 0, mask_.columns(), mask_.rows()}; }

    Pile<Area> areas_;
    ABitMatrix mask_;
    ABitMatrix scratch_;   // what the block was before a change, or one area's own cells
    ABitMatrix others_;    // the mask of all areas but the lifted one
    int never_ = 0;        // how many areas are never-clean
    int isAllBefore_ = 1;  // the whole map is set before areas are: there is no other area
    int lifted_ = -1;
    int lastReplaced_ = -1;
    std::int64_t cells_ = 0;
    CellSums sums_;
    bool gathering_ = false;
    CRect gathered_;
    CRect changed_;
};

}  // namespace pavane

/// Every object of the logic is linked into this program; that the link works without the toolkit
/// is what it is for. It marks areas, edits, undoes and fills a mask as a host without a display
/// does.
#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/areas/AreaCollection.h"
#include "tessel/ABitMatrix.h"

int main()
{
    using namespace pavane;
    AreaCollection areas;
    (void)areas.add({ShapeValues::Kind::rectangle, {2, 2, 5, 4}, 0, {}});
    (void)areas.add({ShapeValues::Kind::ellipse, {1, 1, 8, 6}, 0.5, {}});
    MemoryFile file;
    AreaCollection read;
    if (!areas.Store(file) || !file.seek(0) || !read.Load(file) || !read.erase(1) || !read.undo() ||
        !read.erase(1))
        return 1;
    ABitMatrix mask(8, 10);
    return !read.FillMatrix(mask, 10, 8, {0, 9, 0, 7}) || mask.count() != 12;
}

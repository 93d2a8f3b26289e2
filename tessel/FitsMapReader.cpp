#include "tessel/FitsMapReader.h"

#include "tessel/AFile.h"
#include "tessel/beam_table.h"
#include "tessel/fits_hdus.h"
#include "tessel/fits_header.h"
#include "tessel/fits_planes.h"
#include "tessel/fits_scan.h"

namespace pavane
{

/// The file, and who reads its plane.
struct FitsMapReader::Source {
    AFile file;
    std::unique_ptr<PlaneReader> plane;
};

FitsMapReader::FitsMapReader() = default;

FitsMapReader::~FitsMapReader() = default;

int FitsMapReader::open(const std::string& name, int plane, std::string& error)
{
    header_ = {};
    rows_ = columns_ = 0;
    source_ = std::make_unique<Source>();
    AFile& file = source_->file;
    FitsImage image;
    if (!openFits(name, file, error) || !scanForImage(file, image, error) ||
        !choosePlane(image, plane, error))
        return 0;
    HeaderCards cards;
    if (!cards.read(file, image.headerStart, image.dataStart)) {
        error = "has a header that cannot be read";
        return 0;
    }
    header_ = readMapHeader(cards, image.lengths, plane);
    error = stepFault(cards, header_, 1);
    if (!error.empty())
        return 0;
    header_.planes = static_cast<int>(cellCount(image.lengths, 2));
    if (cards.text("CASAMBM") == "T")
        (void)readTableBeam(file, header_);
    source_->plane = planeReader(file, cards, image, plane, error);
    if (!source_->plane)
        return 0;
    rows_ = static_cast<int>(image.lengths[1]);
    columns_ = static_cast<int>(image.lengths[0]);
    return 1;
}

int FitsMapReader::read(int first, int count, float* cells, std::string& error)
{
    if (source_ && source_->plane && source_->plane->read(first, count, cells))
        return 1;
    error = "has an image that cannot be read whole";
    return 0;
}

}  // namespace pavane

#include "tessel/FitsCubeReader.h"

#include "tessel/AFile.h"
#include "tessel/beam_table.h"
#include "tessel/fits_hdus.h"
#include "tessel/fits_header.h"
#include "tessel/fits_planes.h"
#include "tessel/fits_scan.h"

#include <limits>

namespace pavane
{

/// The file, its header, and who reads the plane that was asked for last.
struct FitsCubeReader::Source {
    AFile file;
    FitsImage image;
    HeaderCards cards;
    MapHeader beam;  ///< its beam is that of a table, for headers that name one
    std::unique_ptr<PlaneReader> reader;
    int plane = -1;
};

FitsCubeReader::FitsCubeReader() = default;

FitsCubeReader::~FitsCubeReader() = default;

int FitsCubeReader::open(const std::string& name, std::string& error)
{
    rows_ = columns_ = planes_ = 0;
    source_ = std::make_unique<Source>();
    Source& s = *source_;
    if (!openFits(name, s.file, error) || !scanForImage(s.file, s.image, error))
        return 0;
    if (!s.cards.read(s.file, s.image.headerStart, s.image.dataStart)) {
        error = "has a header that cannot be read";
        return 0;
    }
    const std::int64_t planes = cellCount(s.image.lengths, 2);
    if (planes > std::numeric_limits<int>::max()) {
        error = "has too many planes";
        return 0;
    }
    if (s.cards.text("CASAMBM") == "T")
        (void)readTableBeam(s.file, s.beam);
    planes_ = static_cast<int>(planes);
    rows_ = static_cast<int>(s.image.lengths[1]);
    columns_ = static_cast<int>(s.image.lengths[0]);
    return 1;
}

int FitsCubeReader::isPacked() const { return source_ && source_->image.packed; }

MapHeader FitsCubeReader::header(int plane) const
{
    if (!source_)
        return {};
    MapHeader header = readMapHeader(source_->cards, source_->image.lengths, plane);
    header.planes = planes_;
    const MapHeader& table = source_->beam;
    if (table.hasBeam) {
        header.hasBeam = 1;
        header.bmaj = table.bmaj;
        header.bmin = table.bmin;
        header.bpa = table.bpa;
    }
    return header;
}

int FitsCubeReader::read(int plane, int first, int count, float* cells, std::string& error)
{
    if (plane < 0 || plane >= planes_) {
        error = "has no plane " + std::to_string(plane);
        return 0;
    }
    Source& s = *source_;
    if (!s.reader || s.plane != plane || (s.image.packed && first == 0)) {
        s.reader.reset();
        s.reader = planeReader(s.file, s.cards, s.image, plane, error);
        s.plane = plane;
    }
    if (!s.reader)
        return 0;
    if (s.reader->read(first, count, cells))
        return 1;
    error = "has an image that cannot be read whole";
    return 0;
}

}  // namespace pavane

#include "apps/view/MapDocument.h"

#include "apps/view/long_work.h"
#include "apps/view/overlays.h"
#include "apps/view/rgb_maps.h"
#include "apps/view/several/moved_map.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/MapLook.h"
#include "pavane/axes/maps/overlays/AOtherContours.h"
#include "pavane/axes/maps/overlays/AVectorGraph.h"
#include "pavane/axes/maps/RgbImage.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

/// A plane of more cells lasts: 64 MB.
constexpr std::int64_t largePlane = std::int64_t{16} * 1024 * 1024;

/// While the frame of `owner` waits; `error` is empty when the user gave up.
int readContent(CWnd* owner, const std::string& file, int plane, MapContent& content,
                std::string& error)
{
    int read = 0;
    const int done =
        doLongWork(owner, "Reading " + baseNameOf(file), [&](const ProgressFunction& tell) {
            return read = readMapContent(file, plane, content, error, tell);
        });
    if (!done)
        error.clear();
    return done && read;
}

}  // namespace

int MapDocument::open(CWnd* owner, const std::string& file, int plane, const ViewOptions& options,
                      std::string& error)
{
    state_ = FileState(file);
    if (!readContent(owner, file, std::max(0, plane), inputs_, error)) {
        if (!error.empty())
            error.insert(0, file + ": ");
        return 0;
    }
    file_ = file;
    cube_.begin(file, inputs_);
    std::string noSky;
    (void)sky_.init(inputs_.map.header, noSky);
    const AMatrix<float>& cells = inputs_.map.cells;
    format_ = StatusFormat(inputs_.map.header, inputs_.frame, cells.rows(), cells.columns());
    TracedContours contours;
    contours.trace(owner, inputs_, options.levels);
    picture_.show(inputs_);
    if (plane < 0 && isOfRgb(inputs_.map.header) && !showRgb(owner, error)) {
        if (!error.empty())
            error.insert(0, file + ": ");
        return 0;
    }
    grid_ = sky_.isSet() ? addSkyGrid(picture_, sky_) : nullptr;
    show(options);
    contours.give(picture_.graph().contours());
    return 1;
}

/// 0 with an empty `error` when the user gave up.
int MapDocument::showRgb(CWnd* owner, std::string& error)
{
    RgbMap map;
    int read = 0;
    if (!doLongWork(owner, "Reading " + baseNameOf(file_), [&](const ProgressFunction& tell) {
            return read = readRgbMap(file_, map, error, tell);
        }))
        error.clear();
    else if (read)
        picture_.setRgb(std::make_shared<RgbImage>(std::move(map)));
    return picture_.rgb() != nullptr;
}

int MapDocument::setShift(const SkyShift& shift, const SkyFrame& in)
{
    MapHeader header = inputs_.map.header;
    std::string error;
    if (shift.isNone())
        header.axes.clear();
    else if (!moveMap(sky_, in, shift, header))
        return 0;
    return moved_.init(header, error) || shift.isNone();
}

SkyShift MapDocument::shiftIn(const SkyFrame& in) const { return shiftOf(sky_, moved_, in); }

int MapDocument::setPlane(CWnd* owner, int plane, const ViewOptions& options, std::string& error)
{
    const auto read = [&](int number, MapContent& content, std::string& fault) {
        return readContent(owner, file_, number, content, fault);
    };
    const int isLarge = inputs_.map.cells.cells() > largePlane;
    if (!cube_.exchange(plane, inputs_, error, isLarge ? CubePlanes::Reader(read) : nullptr))
        return 0;
    TracedContours contours;
    contours.trace(owner, inputs_, options.levels);
    picture_.contentChanged();
    vectorsOfPlane();
    showOwnLevels(options);  // the colours go with the map through its planes
    if (contoursOf_.empty())
        contours.give(picture_.graph().contours());
    return 1;
}

void MapDocument::showLevels(CWnd* owner, const ViewOptions& options)
{
    TracedContours contours;
    contours.trace(owner, inputs_, options.levels);
    showOwnLevels(options);
    if (contoursOf_.empty())
        contours.give(picture_.graph().contours());
}

/// The levels of the options, or none below the contours of another map.
void MapDocument::showOwnLevels(const ViewOptions& options)
{
    applyLevels(picture_, options);
    if (contoursOf_.empty())
        return;
    picture_.graph().contours().setLevels({LevelUnit::absolute, {}});
    picture_.setHeaderNote("contours: " + plainText(baseNameOf(contoursOf_)));
}

void MapDocument::fetchPlane(int plane)
{
    if (inputs_.map.cells.cells() <= largePlane)
        cube_.fetch(plane, inputs_);
}

int MapDocument::setContours(const MapDocument* other, const ViewOptions& options,
                             std::string& error)
{
    contoursOf_.clear();
    if (contours_)
        contours_->clear();
    if (other && (!sky_.isSet() || !other->sky_.isSet()))
        error = (sky_.isSet() ? other->file_ : file_) +
                ": has no place on the sky, so that contours of another map cannot be laid on it";
    else if (other) {
        if (!contours_)
            contours_ = new AOtherContours(&picture_.axis(), picture_.graph());
        if (contours_->setMap(other->inputs_, other->shownSky(), shownSky(), options.levels, {},
                              error))
            contoursOf_ = other->file_;
        else
            error.insert(0, other->file_ + ": ");
    }
    showOwnLevels(options);
    return !other || !contoursOf_.empty();
}

int MapDocument::setVectors(CWnd* owner, const ViewOptions& options, double scale,
                            std::string& error)
{
    if (!sky_.isSet()) {
        error = file_ + ": has no place on the sky, so that vectors have no direction on it";
        return 0;
    }
    ViewOptions wish = options;
    wish.map = file_;
    wish.plane = plane();
    PolarMap polar;
    int isFound = 0;
    const int done =
        doLongWork(owner, "Vectors of polarisation", [&](const ProgressFunction& tell) {
            return isFound = findVectors(wish, inputs_, polar, error, tell);
        });
    if (!done)
        error.clear();
    else if (isFound && !polar.known)
        error = file_ + ": no cell is polarised above the clip";
    if (!done || !isFound || !polar.known)
        return 0;
    polar_ = std::move(polar);
    vectorFault_.clear();
    if (!vectors_)
        vectors_ =
            new AVectorGraph(&picture_.axis(), picture_.graph(), polar_.cells, polar_.angles, sky_);
    vectors_->valuesChanged();
    vectors_->setScale(scale);
    setVectorUnit(*vectors_, wish, polar_);
    vectorWish_ = std::make_unique<ViewOptions>(wish);
    return 1;
}

void MapDocument::clearVectors()
{
    vectorWish_.reset();
    vectorFault_.clear();
    polar_ = {};
    if (vectors_)
        vectors_->valuesChanged();
}

/// Another plane is shown: it may have other vectors, or none.
void MapDocument::vectorsOfPlane()
{
    if (!vectorWish_)
        return;
    vectorWish_->plane = plane();
    vectorFault_.clear();
    if (!findVectors(*vectorWish_, inputs_, polar_, vectorFault_))
        polar_ = {};
    vectors_->valuesChanged();
}

AreaPlace MapDocument::place() const
{
    const AMatrix<float>& cells = inputs_.map.cells;
    return {inputs_.frame.centres(), cells.rows(), cells.columns(), &sky_};
}

void MapDocument::show(const ViewOptions& options)
{
    applyWholeLook(picture_, options);
    (void)showGrid(options.skyGrid);
}

int MapDocument::showGrid(const SkyGridWish& wish)
{
    if (grid_)
        applySkyGrid(*grid_, wish, sky_);
    return grid_ != nullptr;
}

}  // namespace pavane

#include "apps/view/overlays.h"

#include "apps/view/batch_output.h"
#include "apps/view/options.h"
#include "apps/view/paired_maps.h"
#include "apps/view/progress.h"
#include "pavane/axes/A2DAxis.h"
#include "pavane/axes/maps/ALevelsColorGraph.h"
#include "pavane/axes/maps/map_unit.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/maps/overlays/AOtherContours.h"
#include "pavane/axes/maps/overlays/AVectorGraph.h"
#include "tessel/FitsCubeReader.h"
#include "tessel/paths.h"
#include "tessel/plain_text.h"
#include "tessel/value_text.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

constexpr double usualClip = 3;
constexpr int fewDigits = 6;
constexpr int floatDigits = 9;

int refuse(const std::string& file, std::string& error)
{
    error.insert(0, file + ": ");
    return 0;
}

double clipOf(const ViewOptions& options)
{
    return options.made.clip >= 0 ? options.made.clip : usualClip;
}

/// Which planes of a cube hold a Stokes parameter beside `plane`, that alone being another.
int planeOfStokes(const FitsCubeReader& cube, int plane, const std::string& stokes)
{
    const MapHeader header = cube.header(plane);
    int stride = 1;
    for (std::size_t i = 2; i < header.axes.size(); ++i) {
        const int length = std::max(header.axes[i].length, 1);
        if (header.axes[i].ctype == "STOKES") {
            const int first = plane - plane / stride % length * stride;
            for (int k = 0; k < length; ++k)
                if (cube.header(first + k * stride).stokes == stokes)
                    return first + k * stride;
        }
        stride *= length;
    }
    return -1;
}

int readPlane(const std::string& file, int plane, FitsMap& map, std::string& error,
              const ProgressFunction& progress)
{
    return readFitsMap(file, plane, map, error, progress) || refuse(file, error);
}

/// The progress of a share of some work, from `from` on.
ProgressFunction shareOf(const ProgressFunction& progress, double from, double share)
{
    if (!progress)
        return {};
    return [&progress, from, share](double part) { return progress(from + part * share); };
}

/// Where Stokes parameters are read from.
struct StokesPlace {
    std::string file;
    int plane = -1;
};

int findStokes(const ViewOptions& options, const std::string& stokes, const std::string& named,
               StokesPlace& place, std::string& error)
{
    place.file = named.empty() ? options.map : named;
    FitsCubeReader cube;
    if (!cube.open(place.file, error))
        return refuse(place.file, error);
    const int plane = std::clamp(options.plane, 0, std::max(cube.planes() - 1, 0));
    if (!named.empty()) {
        place.plane = cube.planes() > 1 ? options.plane : -1;
        return 1;
    }
    place.plane = planeOfStokes(cube, plane, stokes);
    if (place.plane >= 0)
        return 1;
    error = "has no plane of Stokes " + stokes + ": name files with --stokes-q and --stokes-u";
    return refuse(place.file, error);
}

double noiseOf(const FitsMap& map)
{
    const MapNoise noise = mapNoise(AFloatMatrixAccess(map.cells));
    return noise.finiteCells ? noise.sigma : 0;
}

/// Q, U and what they make beside I.
int polarise(const ViewOptions& options, PolarKind kind, const StokesMap& i, PolarMap& made,
             std::string& error, const ProgressFunction& progress)
{
    FitsMap q, u;
    StokesPlace atQ, atU;
    if (!findStokes(options, "Q", options.overlay.stokesQ, atQ, error) ||
        !findStokes(options, "U", options.overlay.stokesU, atU, error) ||
        !readPlane(atQ.file, atQ.plane, q, error, shareOf(progress, 0, 0.4)) ||
        !readPlane(atU.file, atU.plane, u, error, shareOf(progress, 0.4, 0.4)))
        return 0;
    return findPolarisation(kind, i, {&q.cells, &q.header, noiseOf(q)},
                            {&u.cells, &u.header, noiseOf(u)}, clipOf(options), made, error) ||
           refuse(atQ.file, error);
}

int readVectors(const ViewOptions& options, const MapContent& map, MapOverlays& overlays,
                std::string& error)
{
    overlays.polar = std::make_unique<PolarMap>();
    ProgressLine progress("Reading " + plainText(options.map));
    if (!findVectors(options, map, *overlays.polar, error,
                     [&](double part) { return progress.show(part); }))
        return 0;
    if (!overlays.polar->known)
        printNotes({options.map + ": no cell is polarised above the clip: there are no vectors"});
    return 1;
}

int readOther(const ViewOptions& options, const MapContent& map, MapOverlays& overlays,
              std::string& error)
{
    const std::string& file = options.overlay.contours;
    overlays.other = std::make_unique<MapContent>();
    FitsCubeReader cube;
    ProgressLine progress("Reading " + plainText(file));
    if (!cube.open(file, error) ||
        !readMapContent(file, cube.planes() > 1 ? options.plane : -1, *overlays.other, error,
                        [&](double part) { return progress.show(part); }) ||
        !overlays.otherSky.init(overlays.other->map.header, error))
        return refuse(file, error);
    const AMatrix<float>& cells = map.map.cells;
    error = AOtherContours::faultOf(*overlays.other, overlays.otherSky, overlays.shown,
                                    cells.rows(), cells.columns(), options.made.shift);
    return error.empty() || refuse(file, error);
}

void addContours(MapPicture& picture, const ViewOptions& options, const MapOverlays& overlays)
{
    picture.graph().contours().setLevels({LevelUnit::absolute, {}});
    auto* const contours = new AOtherContours(&picture.axis(), picture.graph());
    CString error;
    CString note = "contours: " + plainText(baseNameOf(options.overlay.contours));
    if (!contours->setMap(*overlays.other, overlays.otherSky, overlays.shown, options.levels,
                          options.made.shift, error))
        note = error;
    else if (const CString levels = levelNoteOf(options.levels, *overlays.other); !levels.empty())
        note += ", " + levels;
    picture.setHeaderNote(note);
}

void addVectors(MapPicture& picture, const ViewOptions& options, const MapOverlays& overlays)
{
    const PolarMap& polar = *overlays.polar;
    auto* const vectors = new AVectorGraph(&picture.axis(), picture.graph(), polar.cells,
                                           polar.angles, overlays.shown);
    setVectorUnit(*vectors, options, polar);
}

}  // namespace

int findVectors(const ViewOptions& options, const MapContent& map, PolarMap& polar,
                std::string& error, const ProgressFunction& progress)
{
    const StokesMap i{&map.map.cells, &map.map.header, map.noise.sigma};
    return polarise(options, options.overlay.length, i, polar, error, progress);
}

void setVectorUnit(AVectorGraph& vectors, const ViewOptions& options, const PolarMap& polar)
{
    if (options.overlay.length == PolarKind::degree) {
        vectors.setUnit("%", 100);
        return;
    }
    const MapUnit unit = mapUnit(polar.header.bunit);
    constexpr double milli = 1e3;
    if (unit.isFlux)
        vectors.setUnit("m" + unit.name, unit.factor * milli);
    else
        vectors.setUnit(polar.header.bunit, 1);
}

int readOverlays(const ViewOptions& options, const MapContent& map, MapOverlays& overlays,
                 std::string& error)
{
    const OverlayWish& wish = options.overlay;
    if (!wish.wanted())
        return 1;
    if (!overlays.shown.init(map.map.header, error)) {
        error.insert(0, "nothing of the sky can lie over it: ");
        return refuse(options.map, error);
    }
    return (wish.contours.empty() || readOther(options, map, overlays, error)) &&
           (!wish.vectors || readVectors(options, map, overlays, error));
}

void addOverlays(MapPicture& picture, const ViewOptions& options, const MapOverlays& overlays)
{
    if (overlays.other)
        addContours(picture, options, overlays);
    if (overlays.polar)
        addVectors(picture, options, overlays);
}

int makePolarisation(const ViewOptions& options, MadeMap& made, MadeTold& told, std::string& error,
                     const ProgressFunction& progress)
{
    FitsCubeReader cube;
    FitsMap i;
    if (!cube.open(options.map, error))
        return refuse(options.map, error);
    const int plane = cube.planes() > 1 ? std::max(options.plane, 0) : -1;
    PolarMap polar;
    const PolarKind kind = options.made.polarisation;
    constexpr double share = 0.3;
    if (!readPlane(options.map, plane, i, error, shareOf(progress, 0, share)) ||
        !polarise(options, kind, {&i.cells, &i.header, noiseOf(i)}, polar, error,
                  shareOf(progress, share, 1 - share)))
        return 0;
    static constexpr const char* names[] = {"polarised intensity", "degree of polarisation",
                                            "angle of polarisation"};
    made.history = {std::string("pavane: ") + names[static_cast<int>(kind)] + " of " +
                        plainText(baseNameOf(options.map)),
                    "pavane: above " + valToStr(clipOf(options), fewDigits) +
                        " times the noise of Q and U, " + valToStr(polar.noise, fewDigits)};
    if (!options.overlay.stokesQ.empty())
        made.history.push_back("pavane: Q and U from " +
                               plainText(baseNameOf(options.overlay.stokesQ)) + " and " +
                               plainText(baseNameOf(options.overlay.stokesU)));
    told.text = statLine("noise", polar.noise, floatDigits, i.header.bunit);
    made.cells = std::move(polar.cells);
    made.errors = std::move(polar.errors);
    made.header = std::move(polar.header);
    return 1;
}

}  // namespace pavane

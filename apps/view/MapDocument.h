#pragma once

#include "apps/view/any_area_file.h"
#include "apps/view/CubePlanes.h"
#include "apps/view/FileState.h"
#include "apps/view/inputs.h"
#include "apps/view/several/map_link.h"
#include "apps/view/status_text.h"
#include "apps/view/TracedContours.h"
#include "pavane/axes/maps/MapPicture.h"
#include "pavane/axes/maps/sky/sky_grid_wish.h"
#include "pavane/measures/maps/polarisation.h"
#include "tessel/SkyCoordinates.h"

#include <memory>
#include <string>

namespace pavane
{

class AOtherContours;
class AVectorGraph;
class CWnd;

/// A map that is open in the window: its cells, where they lie, and what draws them. Neither copied
/// nor moved: graphs and bars point into it.
class MapDocument
{
public:
    MapDocument() = default;
    MapDocument(const MapDocument&) = delete;
    MapDocument& operator=(const MapDocument&) = delete;

    /// Reads the map, while the frame of `owner` waits. Without a `plane` (-1) a cube begins with
    /// its first one, and an RGB map shows its colours. Non-zero on success; else 0 and `error` is
    /// one line with the file's name, empty when the user gave up.
    int open(CWnd* owner, const std::string& file, int plane, const ViewOptions& options,
             std::string& error);

    /// Planes of a cube, 1 of a plain map; the one that is shown, from 0.
    int planes() const { return cube_.count(); }
    int plane() const { return inputs_.map.header.plane; }
    /// Shows another plane as `show` does, while the frame of `owner` waits for a large one.
    /// Non-zero on success; else 0, `error` is a line, empty when the user gave up, and the plane
    /// stays.
    int setPlane(CWnd* owner, int plane, const ViewOptions& options, std::string& error);

    /// Reads a plane that an animation shows next, unless that lasts.
    void fetchPlane(int plane);

    const std::string& file() const { return file_; }
    const ViewInputs& inputs() const { return inputs_; }
    const SkyCoordinates& sky() const { return sky_; }
    const StatusFormat& format() const { return format_; }
    AreaPlace place() const;
    LinkedMap linked() const { return {&inputs_.frame, &shownSky()}; }
    /// Where it lies in all that compares it with others: as its file says, or moved from there.
    const SkyCoordinates& shownSky() const { return moved_.isSet() ? moved_ : sky_; }
    int isMoved() const { return moved_.isSet(); }
    /// Moves it there so far east and north, as seen in a frame; what is none ends that. Nothing is
    /// drawn. 0, and as before, for a map without a place in the frame.
    int setShift(const SkyShift& shift, const SkyFrame& in);
    /// How far it is moved, as seen in a frame.
    SkyShift shiftIn(const SkyFrame& in) const;
    /// "" while its file is as it was when it was opened; else what has happened to it.
    std::string changeOnDisk() const { return state_.change(); }
    MapPicture& picture() { return picture_; }
    A2DAxis& axis() { return picture_.axis(); }

    /// Gives the picture the scale and the levels of the options.
    void show(const ViewOptions& options);
    /// The grid of the sky; 0 where the map has no place on it.
    int showGrid(const SkyGridWish& wish);
    /// Draws the contours of another map, as the options have its levels, in place of its own;
    /// null: its own again. 0 with `error` where one of them has no place on the sky or without
    /// memory.
    int setContours(const MapDocument* other, const ViewOptions& options, std::string& error);
    /// The file of the other map; "" without one.
    const std::string& contoursOf() const { return contoursOf_; }
    /// Draws vectors of polarisation over the map, as the options have their length, clip, Q and U,
    /// `scale` times the usual length; other planes of the file get their own. 0 with `error`, a
    /// line that names a file and is empty when the user gave up, where they cannot be had: nothing
    /// has changed then.
    int setVectors(CWnd* owner, const ViewOptions& options, double scale, std::string& error);
    void clearVectors();
    int hasVectors() const { return vectorWish_ != nullptr; }
    /// Why the plane that is shown has no vectors, though they are wanted; "" when it has.
    const std::string& vectorFault() const { return vectorFault_; }
    /// The levels alone; while those of a large map are traced the frame of `owner` waits.
    void showLevels(CWnd* owner, const ViewOptions& options);

private:
    int showRgb(CWnd* owner, std::string& error);
    void showOwnLevels(const ViewOptions& options);
    void vectorsOfPlane();

    std::string file_;
    std::string contoursOf_;
    AOtherContours* contours_ = nullptr;       ///< the axis's
    std::unique_ptr<ViewOptions> vectorWish_;  ///< null without vectors
    PolarMap polar_;
    AVectorGraph* vectors_ = nullptr;  ///< the axis's, of `polar_`
    std::string vectorFault_;
    FileState state_;
    ViewInputs inputs_;
    CubePlanes cube_;
    SkyCoordinates sky_, moved_;
    MapPicture picture_;
    ASkyGrid* grid_ = nullptr;  ///< the axis's; null for a map that has no place on the sky
    StatusFormat format_;
};

}  // namespace pavane

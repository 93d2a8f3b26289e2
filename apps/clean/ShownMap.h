#pragma once

#include "apps/view/status_text.h"
#include "pavane/axes/maps/cells/contour_levels.h"
#include "pavane/axes/maps/ColorLook.h"
#include "pavane/axes/maps/MapContent.h"
#include "pavane/axes/maps/MapPicture.h"
#include "tessel/SkyCoordinates.h"

#include <array>
#include <list>
#include <memory>
#include <string>

namespace pavane
{

/// The maps that a round has, in the order of the choice above the map. A round of the whole map
/// has no mask.
enum class MapKind { residual, restored, model, dirty, beam, mask };
inline constexpr std::size_t mapKinds = 6;
const char* mapKindName(MapKind kind);

/// The map in the window of pavane-clean: one file after another, of the same cells as a rule.
/// Those that were shown last are kept, so that going back and blinking need no reading; palette,
/// scale and contours stay, the range of values stays for each kind; model and mask, which have no
/// noise, have contours of their own, at first none. Neither copied nor moved.
class ShownMap
{
public:
    ShownMap() = default;
    ShownMap(const ShownMap&) = delete;
    ShownMap& operator=(const ShownMap&) = delete;

    /// What `show` has changed.
    enum class Change {
        none,   ///< and `error` says why
        cells,  ///< other values on the same axes: draw again
        map     ///< another axis: give it to the window
    };
    /// Shows a file. Ranges of a kind are kept until `forgetRanges`; with `range` it is drawn with
    /// that one, which is not kept.
    Change show(const std::string& file, MapKind kind, std::string& error,
                const TMnMx& range = TMnMx());
    int isOpen() const { return isOpen_; }
    const std::string& file() const { return file_; }
    MapKind kind() const { return kind_; }
    /// The range of values in which it is drawn.
    TMnMx range();

    /// Keeps a map that was read elsewhere and is to be shown soon.
    void offer(const std::string& file, MapContent&& content);
    /// Needs no reading to be shown.
    int has(const std::string& file) const { return cellsOf(file) != nullptr; }
    /// A file is about to be another one, or to go.
    void forget(const std::string& file);
    void forgetRanges() { ranges_.fill(TMnMx()); }

    const MapContent& content() const { return content_; }
    /// Of an open map.
    const SkyCoordinates& sky() const { return *sky_; }
    const StatusFormat& format() const { return format_; }
    MapPicture& picture() { return picture_; }

    /// The cells of a map that was shown and is kept; null when it is not kept.
    const AMatrix<float>* cellsOf(const std::string& file) const;
    /// This one is kept longer than others; "": none.
    void hold(const std::string& file) { held_ = file; }

    /// A cell (MP) of a map that was shown and is kept; not-a-number when it is not kept.
    float valueIn(const std::string& file, int row, int column) const;

private:
    struct Kept {
        std::string file;
        MapContent content;
    };
    int take(const std::string& file, MapContent& content, std::string& error);
    void keep(const std::string& file, MapContent&& content);
    ContourLevels& levelsOf(MapKind kind);
    static int isSamePlace(const MapContent& a, const MapContent& b);

    std::string file_, held_;
    MapKind kind_ = MapKind::residual;
    int isOpen_ = 0;
    int hasLentRange_ = 0;  ///< the range is one that was asked for this once
    MapContent content_;
    std::list<Kept> kept_;  ///< the latest first
    std::array<TMnMx, mapKinds> ranges_;
    ContourLevels levels_, levelsWithoutNoise_{LevelUnit::absolute, {}};
    MapPicture picture_;
    std::unique_ptr<SkyCoordinates> sky_;
    StatusFormat format_;
};

}  // namespace pavane

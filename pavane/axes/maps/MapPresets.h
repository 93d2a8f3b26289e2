#pragma once

#include "pavane/axes/maps/MapDisplay.h"

#include <vector>

namespace pavane
{

/// A style of map displays under a name.
struct MapPreset {
    CString name;
    MapDisplay display;
};

/// The presets that the user has kept, in a section of the profile.
class PAVANE_API MapPresets
{
public:
    explicit MapPresets(const CString& section = "MapPresets") : section_(section) {}
    /// What the profile holds: entries that are no presets are passed over, of two with one name
    /// the first counts. Returns how many there are.
    int load();
    int count() const { return static_cast<int>(presets_.size()); }
    const MapPreset& operator[](int index) const
    {
        return presets_[static_cast<std::size_t>(index)];
    }
    /// Index of a name, capitals or not (ASCII); -1 when there is none.
    int find(const CString& name) const;
    /// Keeps a style in the profile, in place of the one of that name. Non-zero on success; else 0,
    /// `error` is a line, and the presets are as before.
    int keep(const CString& name, const MapDisplay& display, CString& error);
    /// The same for taking one away.
    int remove(int index, CString& error);

    static constexpr int most = 50;
    static constexpr std::size_t longestName = 60;

private:
    int store(const std::vector<MapPreset>& presets, CString& error);

    CString section_;
    std::vector<MapPreset> presets_;
};

}  // namespace pavane

#pragma once

#include "apps/options/option_table.h"
#include "pavane/axes/maps/MapLook.h"
#include "tessel/rgb_map.h"

#include <array>
#include <string>
#include <string_view>

namespace pavane
{

struct ViewOptions;

/// What the command line says of a map in three colours.
struct RgbWish {
    int wanted = 0;                       ///< of three maps that are named
    std::array<MapLook, rgbBands> looks;  ///< of each the range, where one was given

    int hasRange() const
    {
        for (const MapLook& look : looks)
            if (look.hasRange)
                return 1;
        return 0;
    }
};

/// The options of such maps, all of which have `traits`, behind those that stand in the table.
void addRgbOptions(OptionTable<ViewOptions>& table, int traits);
/// Non-zero for one of them: they make no sense for a file of visibilities.
int isRgbOption(std::string_view name);
/// Whether those that were given go together; else `error` is one line.
int checkRgbOptions(const ViewOptions& options, const GivenArguments<ViewOptions>& given,
                    std::string& error);

/// LOW,HIGH or p:LOW,HIGH, for the option of that name.
int readColourRange(const std::string& name, const std::string& text, MapLook& look,
                    std::string& error);

}  // namespace pavane

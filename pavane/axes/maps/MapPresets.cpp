#include "pavane/axes/maps/MapPresets.h"

#include "pavane/resources/map_display_messages.h"
#include "platform/profile.h"

#include <algorithm>
#include <utility>

namespace pavane
{

namespace
{

char small(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; }

int sameName(const CString& a, const CString& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return small(x) == small(y); });
}

CString entryOf(int index) { return "Preset" + std::to_string(index + 1); }

/// Blanks at the ends would be lost in lists that users see.
CString trimmed(const CString& name)
{
    const std::size_t first = name.find_first_not_of(' ');
    if (first == CString::npos)
        return {};
    return name.substr(first, name.find_last_not_of(' ') - first + 1);
}

int isName(const CString& name)
{
    return !name.empty() && name.size() <= MapPresets::longestName &&
           std::none_of(name.begin(), name.end(), [](char c) {
               return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || c == '|';
           });
}

}  // namespace

int MapPresets::load()
{
    presets_.clear();
    for (int i = 0; i < most; ++i) {
        const CString text = GetProfileString(section_, entryOf(i));
        const std::size_t bar = text.find('|');
        if (bar == CString::npos)
            continue;
        MapPreset preset{trimmed(text.substr(0, bar)), {}};
        if (isName(preset.name) && find(preset.name) < 0 &&
            preset.display.readStyle(text.substr(bar + 1)))
            presets_.push_back(std::move(preset));
    }
    return count();
}

int MapPresets::find(const CString& name) const
{
    const auto at = std::find_if(presets_.begin(), presets_.end(), [&](const MapPreset& each) {
        return sameName(each.name, trimmed(name));
    });
    return at == presets_.end() ? -1 : static_cast<int>(at - presets_.begin());
}

int MapPresets::keep(const CString& name, const MapDisplay& display, CString& error)
{
    if (!isName(trimmed(name)))
        return error = presetNameText, 0;
    std::vector<MapPreset> presets = presets_;
    const MapPreset preset{trimmed(name), display.styleFor({})};
    const int index = find(name);
    if (index >= 0)
        presets[static_cast<std::size_t>(index)] = preset;
    else if (count() >= most)
        return error = presetsFullText, 0;
    else
        presets.push_back(preset);
    return store(presets, error);
}

int MapPresets::remove(int index, CString& error)
{
    if (index < 0 || index >= count())
        return error = noPresetText, 0;
    std::vector<MapPreset> presets = presets_;
    presets.erase(presets.begin() + index);
    return store(presets, error);
}

/// Entries that are the same already are not written; when one cannot be written those before it
/// go back.
int MapPresets::store(const std::vector<MapPreset>& presets, CString& error)
{
    std::vector<std::pair<CString, CString>> written;
    for (int i = 0; i < most; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const CString wanted = at < presets.size()
                                   ? presets[at].name + '|' + presets[at].display.styleText()
                                   : CString();
        const CString before = GetProfileString(section_, entryOf(i));
        if (wanted == before)
            continue;
        if (!WriteProfileString(section_, entryOf(i), wanted)) {
            for (const auto& [entry, text] : written)
                (void)WriteProfileString(section_, entry, text);
            return error = presetNotKeptText, 0;
        }
        written.emplace_back(entryOf(i), before);
    }
    presets_ = presets;
    return 1;
}

}  // namespace pavane

#include "pavane/dialogs/values/record_entries.h"

#include "platform/profile.h"
#include "tessel/AFile.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace pavane
{

namespace
{

constexpr std::int64_t mostBytes = std::int64_t{1} << 20;

/// What is never a text of the profile, to tell a missing one from an empty one.
constexpr const char* missing = "\x01";

}  // namespace

int storeEntries(AFile& file, const std::vector<RecordEntry>& entries)
{
    std::string block;
    for (const RecordEntry& entry : entries)
        block.append(entry.key).append("=").append(entry.text).append("\n");
    // a text with an end of a line in it would come back as two
    const auto lines = std::count(block.begin(), block.end(), '\n');
    if (static_cast<std::int64_t>(block.size()) > mostBytes ||
        lines != static_cast<std::ptrdiff_t>(entries.size()))
        return 0;
    const auto length = static_cast<std::uint32_t>(block.size());
    std::uint8_t bytes[4];
    for (unsigned i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(length >> 8 * i);
    return file.write(bytes, sizeof bytes) &&
           file.write(block.data(), static_cast<std::int64_t>(block.size()));
}

int loadEntries(AFile& file, std::vector<RecordEntry>& entries)
{
    std::uint8_t bytes[4];
    if (!file.read(bytes, sizeof bytes))
        return 0;
    std::uint32_t length = 0;
    for (unsigned i = 0; i < 4; ++i)
        length |= std::uint32_t{bytes[i]} << 8 * i;
    if (length > mostBytes || length > file.left())
        return 0;
    std::string block(length, '\0');
    if (!file.read(block.data(), length))
        return 0;
    entries.clear();
    for (std::size_t at = 0; at < block.size();) {
        const std::size_t end = std::min(block.find('\n', at), block.size());
        const std::string line = block.substr(at, end - at);
        const std::size_t sign = line.find('=');
        if (sign != std::string::npos)
            entries.push_back({line.substr(0, sign), line.substr(sign + 1)});
        at = end + 1;
    }
    return 1;
}

int writeProfileEntries(const char* section, int index, const std::vector<RecordEntry>& entries)
{
    if (!section)
        return 0;
    const std::string number = std::to_string(index);
    int all = 1;
    for (const RecordEntry& entry : entries)
        all = WriteProfileString(section, entry.key + number, entry.text) && all;
    return all;
}

int readProfileEntries(const char* section, int index, std::vector<RecordEntry>& entries)
{
    if (!section)
        return entries.clear(), 0;
    const std::string number = std::to_string(index);
    const std::size_t wanted = entries.size();
    for (RecordEntry& entry : entries)
        entry.text = GetProfileString(section, entry.key + number, missing);
    std::erase_if(entries, [](const RecordEntry& entry) { return entry.text == missing; });
    return entries.size() == wanted;
}

}  // namespace pavane

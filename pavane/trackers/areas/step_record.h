#pragma once

#include "pavane/trackers/areas/record_layouts.h"
#include "pavane/trackers/shapes/area_label.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace pavane
{

// Records as steps of undo keep them.

inline void setActiveBit(std::string& record, int on)
{
    const auto bit = static_cast<char>(trackerActive);
    if (!record.empty())
        record[0] = static_cast<char>(on ? record[0] | bit : record[0] & ~bit);
}

inline int activeBit(std::string_view record)
{
    return !record.empty() && (record[0] & static_cast<char>(trackerActive)) != 0;
}

/// The style of a record, whose first bytes it is; 0 of one that is cut short.
inline unsigned styleOfRecord(std::string_view record)
{
    unsigned style = 0;
    if (record.size() >= sizeof style)
        std::memcpy(&style, record.data(), sizeof style);
    return style;
}

inline void setStyleOfRecord(std::string& record, unsigned style)
{
    if (record.size() >= sizeof style)
        std::memcpy(record.data(), &style, sizeof style);
}

/// Takes the number of vertices out of a polygon's record, so that one vertex more differs in its
/// own bytes only. A number below 0, which stands for none, stays.
inline void dropVertexCount(std::string& record)
{
    std::int32_t count = -1;
    if (record.size() >= recordHeadBytes + sizeof count)
        std::memcpy(&count, record.data() + recordHeadBytes, sizeof count);
    if (count >= 0)
        record.erase(recordHeadBytes, sizeof count);
}

/// Puts it back where it was taken out, by the bytes that a vertex takes.
inline void putVertexCount(std::string& record, std::size_t vertexBytes)
{
    if (record.size() < recordHeadBytes || (record.size() - recordHeadBytes) % vertexBytes != 0)
        return;
    const auto count = static_cast<std::int32_t>((record.size() - recordHeadBytes) / vertexBytes);
    char field[sizeof count];
    std::memcpy(field, &count, sizeof count);
    record.insert(recordHeadBytes, field, sizeof field);
}

/// Puts a label behind a record; of most areas, which have none, it is one byte.
inline void appendLabel(std::string& record, const AreaLabel& label)
{
    if (!label.isEmpty()) {
        const auto length = static_cast<std::uint32_t>(label.name.size());
        record += label.name;
        char fields[sizeof label.colour + sizeof length];
        std::memcpy(fields, &label.colour, sizeof label.colour);
        std::memcpy(fields + sizeof label.colour, &length, sizeof length);
        record.append(fields, sizeof fields);
    }
    record.push_back(label.isEmpty() ? '\0' : '\1');
}

/// Takes it off again.
inline AreaLabel takeLabel(std::string& record)
{
    AreaLabel label;
    const int hasLabel = !record.empty() && record.back() != 0;
    if (!record.empty())
        record.pop_back();
    std::uint32_t length = 0;
    constexpr std::size_t fields = sizeof label.colour + sizeof length;
    if (!hasLabel || record.size() < fields)
        return label;
    const std::size_t end = record.size() - fields;
    std::memcpy(&label.colour, record.data() + end, sizeof label.colour);
    std::memcpy(&length, record.data() + end + sizeof label.colour, sizeof length);
    if (length <= end) {
        label.name = record.substr(end - length, length);
        record.resize(end - length);
    }
    return label;
}

}  // namespace pavane

#pragma once

#include "platform/picture.h"

#include "json_value.h"

inline std::vector<pavane::CPoint> pointsOf(const JsonValue& list)
{
    std::vector<pavane::CPoint> points;
    for (const JsonValue& p : list.items)
        points.push_back({p[0].asInt(), p[1].asInt()});
    return points;
}

inline pavane::CRect rectOf(const JsonValue& r, std::size_t first = 0)
{
    return {r[first].asInt(), r[first + 1].asInt(), r[first + 2].asInt(), r[first + 3].asInt()};
}

/// The recorded pixels of a case.
pavane::CPicture recordedPicture(const JsonValue& test);

/// Carries out the recorded steps of `test` on a white picture. `others` gives the pictures that a
/// step may copy from. Returns what differs from the recorded pixels and answers, "" for nothing.
std::string replay(const JsonValue& test, std::map<std::string, pavane::CPicture>& others);

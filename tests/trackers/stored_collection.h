#pragma once

#include "pavane/trackers/AAreaTracker.h"
#include "pavane/trackers/AEllipseTracker.h"
#include "pavane/trackers/ARectTracker.h"
#include "pavane/trackers/ARotateRectTracker.h"
#include "pavane/trackers/ARPAreaTracker.h"
#include "pavane/trackers/ARPEllipseTracker.h"
#include "pavane/trackers/ARPRectTracker.h"
#include "pavane/trackers/ARPRotateRectTracker.h"
#include "pavane/trackers/ARPTrackerArray.h"
#include "pavane/trackers/ATrackerArray.h"
#include "pavane/trackers/MemoryFile.h"

#include <memory>
#include <string>
#include <vector>

namespace pavane::test
{

template <typename Array>
std::string stored(const Array& array)
{
    MemoryFile file;
    EXPECT_TRUE(array.Store(file));
    return file.bytes();
}

template <typename Area, typename Point>
Area* polygon(const std::vector<Point>& points)
{
    auto* area = new Area;
    for (const Point& p : points)
        (void)area->points().Add(p);
    area->SetStyle(area->GetStyle() | trackerReady);
    return area;
}

inline AAreaTracker* pixelArea(const std::vector<CPoint>& points)
{
    return polygon<AAreaTracker>(points);
}

inline ARPAreaTracker* valueArea(const std::vector<APoint<double>>& points)
{
    return polygon<ARPAreaTracker>(points);
}

template <typename Tracker, typename Rect>
Tracker* withRect(const Rect& rect, double angle)
{
    auto* tracker = new Tracker;
    tracker->SetRect(rect);
    tracker->SetAngle(angle);
    return tracker;
}

}  // namespace pavane::test

#pragma once

#include "pavane/containers/MemoryFile.h"
#include "pavane/trackers/collections/ARPTrackerArray.h"
#include "pavane/trackers/collections/ATrackerArray.h"
#include "tests/trackers/made_tracker.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace pavane::test
{

template <typename Array>
std::string stored(const Array& array)
{
    MemoryFile file;
    EXPECT_TRUE(array.Store(file));
    return file.bytes();
}

/// The stored areas without what no user sees of them: who is current, and the rectangles that
/// every press refreshes.
inline std::string shapesOf(const std::string& stored)
{
    MemoryFile file(stored);
    ARPTrackerArray read;
    EXPECT_TRUE(read.Load(file));
    std::string all;
    for (int i = 0; i < read.count(); ++i)
        all += read(i)->GetClassName() + read(i)->State().substr(56);
    return all;
}

/// A tracker of the collection's own class for the tool, with the numbers that fit it.
template <typename Array>
auto* shaped(Array& array, int tool, const ShapeValues& shape)
{
    auto* const tracker = array.GetNewTracker(tool);
    giveShape(*tracker, shape);
    if (tool == toolArea)
        tracker->SetStyle(tracker->GetStyle() | trackerReady);
    return tracker;
}

/// Adds a shape with whole numbers of any kind.
template <typename Array>
void addAny(Array& array, std::mt19937& random, int makeCurrent = 0)
{
    const int tools[] = {toolRect, toolRotateRect, toolEllipse, toolArea};
    const auto number = [&](unsigned most) { return static_cast<double>(random() % most); };
    const double x = number(400) - 40;
    const double y = number(300) - 40;
    const ARect<double> rect{x, y, x + 5 + number(90), y + 5 + number(90)};
    array.Add(shaped(array, tools[random() % 4],
                     {{}, rect, number(7) - 3.5, {{x, y}, {rect.right, y + 9}, {x, rect.bottom}}}),
              makeCurrent);
}

}  // namespace pavane::test

#pragma once

#include <functional>

struct ChainPoint {
    int x = 0;
    int y = 0;
};

/// Presses the left button on the window that shows at `at` of the screen and moves the pointer
/// `moves` times, each move only when the picture that the one before asked for is on the window;
/// then releases the button. Returns the seconds that a move took, 0 when there is no window. The
/// places are `place(i)`, in pixels of that window.
double secondsPerMove(ChainPoint at, int moves, const std::function<ChainPoint(int)>& place);

/// Hands out what waits for the windows.
void letEventsRun();

#pragma once

#include <functional>

class QWidget;

/// Presses the left button at (x, y) of a widget and moves the pointer `moves` times, each move
/// only when the picture that the one before asked for is on the window; then releases the button.
/// Returns the seconds that a move took. The places are `place(i)`, in pixels of the widget.
struct ChainPoint {
    int x = 0;
    int y = 0;
};
double secondsPerMove(QWidget& widget, int moves, const std::function<ChainPoint(int)>& place);

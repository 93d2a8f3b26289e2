#pragma once

#include <string>

namespace pavane
{

class CWnd;
struct MapDisplay;
class SampDesk;

/// What a window of the program asks of the others: files that it does not show get a window of
/// their own, and the last one to close ends the program.
class WindowHost
{
public:
    virtual ~WindowHost() = default;
    /// A window for a map, a file of visibilities, or areas, whose map the user is asked for.
    /// Non-zero when the file is shown; else the user was told why not.
    virtual int openWindow(const std::string& file) = 0;
    virtual void windowClosed(CWnd& window) = 0;
    /// The palette of the program is another one: all windows of maps show it, or, with 0, what
    /// they showed before.
    virtual void paletteForAll(int on) = 0;
    /// Maps of the other windows, and those that are opened from now on, are displayed in this
    /// style.
    virtual void styleForAll(const MapDisplay& display, const CWnd& from) = 0;
    /// The talk with other programs, made when it is asked for first; null where there is none.
    virtual SampDesk* samp() { return nullptr; }
};

}  // namespace pavane

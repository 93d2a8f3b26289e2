#pragma once

#include "platform/CDialog.h"

#include <span>

namespace pavane
{

/// A line of the help: what to press, and what it does.
struct KeyLine {
    const char* keys;
    const char* what;
};

/// Shows such lines, which stay while the dialog is open, as two columns.
void showKeys(CWnd* parent, std::span<const KeyLine> lines);

// Keys and mouse of pavane-view, as two columns of lines.
void showMapKeys(CWnd* parent);
void showDataKeys(CWnd* parent);

/// What the program is.
void showAbout();

}  // namespace pavane

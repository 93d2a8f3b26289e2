#pragma once

#include "platform/CDialog.h"
#include "tessel/sky_text.h"

#include <string>
#include <vector>

namespace pavane
{

/// Asks for a position until it can be read; `usual` is the frame of one that names none. Non-zero
/// when the user gave one.
int askPosition(CWnd* parent, const SkyFrame& usual, SkyPosition& position);

/// Shows lines with the find of AInfoText; they are copied and searched, the window grows.
void showLines(CWnd* parent, const CString& title, const CString& heading,
               const std::vector<std::string>& lines);

}  // namespace pavane

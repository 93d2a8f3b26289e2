#pragma once

#include "platform/CDialog.h"

#include <string>
#include <vector>

namespace pavane
{

/// Shows a list of lines between a heading and a question; IDOK or IDCANCEL.
int askAboutLines(CWnd* parent, const CString& title, const CString& heading,
                  const std::vector<std::string>& lines, const CString& question,
                  const CString& yes);

/// Asks for contour levels as the option --levels takes them, until they are right. Non-zero when
/// the user gave some.
int askLevels(CWnd* parent, CString& text);

}  // namespace pavane

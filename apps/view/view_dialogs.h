#pragma once

#include "platform/CDialog.h"

#include <chrono>
#include <memory>
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

/// Keys and mouse, as two columns of lines.
void showKeys(CWnd* parent);

/// Says how far a long job is, with a button to give it up; shows itself only when the job takes
/// longer than a moment. The windows below take no input meanwhile.
class JobBox
{
public:
    JobBox(CWnd* parent, CString what);
    JobBox(const JobBox&) = delete;
    JobBox& operator=(const JobBox&) = delete;
    ~JobBox();
    /// Fraction done, 0 to 1; 0 when the user gave up.
    int show(double fraction);

private:
    class Box;
    CWnd* parent_;
    CString what_;
    std::chrono::steady_clock::time_point start_;
    int shownPercent_ = -1;
    std::unique_ptr<Box> box_;
};

}  // namespace pavane

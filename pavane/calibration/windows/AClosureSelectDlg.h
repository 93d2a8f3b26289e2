#pragma once

#include "pavane/calibration/ClosureReader.h"
#include "pavane/calibration/windows/AClosureTbl.h"
#include "pavane/windows/AResizeDialog.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace pavane
{

/// Lets the user choose triangles of a data file and how their phases are averaged: triangles of
/// the marked telescopes, all of them, an independent set or those with a reference telescope, in a
/// list with counts, means and scatters of their closure phases, which are read while the dialog is
/// open. Triangles with two telescopes less than 10 km apart are marked as trivial.
class PAVANE_API AClosureSelectDlg : public AResizeDialog
{
public:
    /// The file outlives it; `baselines` are those that it has.
    AClosureSelectDlg(AUVXFile& file, const std::vector<UvBaseline>& baselines, UvMarks marks = {},
                      CWnd* parent = nullptr);

    /// Those that are marked at first. Without a call an independent set is, and once points have
    /// been counted another one, of those that have most, unless the user has marked others.
    void SetChosen(const std::vector<ClosureTriangle>& triangles);
    /// Those that are marked, with their points where these have been counted.
    std::vector<ClosureTriangle> GetChosen() const;

    /// Not averaged at first.
    void SetAveraging(const ClosureAveraging& averaging);
    const ClosureAveraging& GetAveraging() const { return averaging_; }

    // What the user does
    /// All, an independent set, those with the reference telescope.
    enum class Shown : int { all, independent, withReference };
    void ShowTriangles(Shown shown);
    /// Shows those with a telescope, by its place in the list of telescopes, from 0.
    void SetReference(int telescope);
    /// Shows those only whose name holds the text, capitals or not; "" for all.
    void Search(const CString& text);
    AClosureTbl& telescopes() { return telescopes_; }
    AClosureTbl& triangles() { return triangles_; }
    /// Counts to the end at once; for tests.
    void ReadAll();

protected:
    int OnInitDialog() override;
    void OnOK() override;
    void OnTimer(unsigned id) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    ClosureRow rowOf(std::size_t triangle) const;
    void countPoints();
    void keepMarks();
    void list();
    void showMarks();
    void showCount();
    const std::vector<char>& independentFlags();
    int readAveraging();
    std::ptrdiff_t indexOf(const ClosureTelescope& telescope) const;
    int areTelescopesMarked(const ClosureTriangle& triangle) const;
    int isListed(const ClosureTriangle& triangle);

    AUVXFile& file_;
    std::vector<ClosureTelescope> all_;      ///< telescopes, in the order of their list
    std::vector<ClosureTriangle> possible_;  ///< triangles
    std::vector<char> marked_;               ///< which of them are
    std::vector<char> independent_;          ///< which are of an independent set
    std::vector<char> independentOf_;        ///< and of what
    std::vector<std::size_t> listed_;        ///< those in the list, in its order
    std::unique_ptr<ClosureReader> reader_;
    ClosureAveraging averaging_;
    int isMarked_ = 0;  ///< by the host or the user
    int counting_ = 0;
    int listing_ = 0;
    Shown shown_ = Shown::all;
    std::ptrdiff_t reference_ = 0;
    CString search_;
    AClosureTbl telescopes_{0};
    AClosureTbl triangles_{1};
};

}  // namespace pavane

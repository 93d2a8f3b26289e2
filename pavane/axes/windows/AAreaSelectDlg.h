#pragma once

#include "pavane/axes/windows/AAxisTrkSelWnd.h"
#include "pavane/windows/AResizeDialog.h"

namespace pavane
{

/// A dialog in which the user marks areas on an axis. OK keeps them; Cancel asks when there is
/// something to lose, and brings back those from before.
class PAVANE_API AAreaSelectDlg : public AResizeDialog
{
public:
    explicit AAreaSelectDlg(CWnd* parent = nullptr);
    /// Give it the axis, the map and the areas before DoModal.
    AAxisTrkSelWnd& window() { return window_; }

protected:
    int OnInitDialog() override;
    void OnCancel() override;
    void OnDestroy() override;

private:
    std::string shapes() const;

    AAxisTrkSelWnd window_;
    std::string stored_;  ///< the areas as they were, in their stored form
    std::string shapes_;  ///< what of it the user can see
    int modified_ = 0;    ///< whether those were unsaved
};

}  // namespace pavane

#pragma once

#include "apps/clean/ChainTable.h"
#include "pavane/windows/AResizeDialog.h"

#include <functional>
#include <map>
#include <string>

namespace pavane
{

/// "Chain of gains": which gains correct the data, in their order. OK takes the chain, Cancel
/// leaves the study as it was.
class ChainDialog : public AResizeDialog
{
public:
    /// What the user asked for beside the chain when the dialog ended.
    enum class Wish { nothing, solve, graph };

    /// Both outlive the dialog.
    ChainDialog(ChainEdits& edits, const AStudy& study, CWnd* parent);
    ~ChainDialog() override;

    /// Adds gains of another study to the edits; non-zero when it did. Without it there is no such
    /// button.
    std::function<int(CWnd& dialog, ChainEdits& edits)> copyFromStudy;

    Wish wish() const { return wish_; }
    /// The link of `solve` and `graph`, from 0.
    int link() const { return link_; }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;

private:
    void showLines();
    void showButtons();
    void takeRound();
    void end(Wish wish);

    ChainEdits& edits_;
    const AStudy& study_;
    ChainTable table_;
    std::map<int, LinkLine> known_;  ///< by gains: what was read of their files
    Wish wish_ = Wish::nothing;
    int link_ = -1;
};

}  // namespace pavane

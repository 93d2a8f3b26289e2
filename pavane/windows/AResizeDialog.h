#pragma once

#include "pavane/dialogs/layout/dialog_layout.h"
#include "platform/CDialog.h"

#include <span>
#include <vector>

namespace pavane
{

/// A dialog that the user may make larger than its template, which is its least size: with a grip,
/// and a box to maximise when its controls grow both ways. Its controls follow as its items say;
/// those without an item stay where they are.
class PAVANE_API AResizeDialog : public CDialog
{
public:
    /// Templates of the library are known without more.
    explicit AResizeDialog(unsigned templateId, CWnd* parent = nullptr);
    /// The template is not copied.
    explicit AResizeDialog(const DlgTemplate& dialog, CWnd* parent = nullptr);
    ~AResizeDialog() override;

    /// How the controls follow, by identifier; copied. Before the dialog is made, or in
    /// OnInitDialog for controls that are made there: what has no place in the template follows
    /// from where it stands now. Items whose control is not there are passed over.
    void SetResizeItems(std::span<const ResizeItem> items);
    /// The section of the profile that keeps size and place of the dialog from one time to the
    /// next, also that it was maximised. Before the dialog is made; "" (as at first) keeps nothing.
    void SetPlacementSection(const CString& section) { section_ = section; }
    /// Pixels of the client area that the template asks for; 0, 0 before the dialog is made.
    CSize GetLeastSize() const { return least_; }

protected:
    /// Heirs call it before they look at their controls: it brings the dialog to its kept size.
    int OnInitDialog() override;
    void OnSize(unsigned type, int cx, int cy) override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    void OnDestroy() override;
    /// Folds the rows between two heights of the template (dialog units) away, or out again: items
    /// that stand between them are hidden, those below move up, and the dialog with its least size
    /// becomes so much lower. In OnInitDialog or later.
    void FoldRows(int top, int bottom, int fold);

private:
    struct Fold {
        int top, bottom;  ///< in pixels of the template
    };
    void takePlaces();
    void fitToFolds();
    void layOut();

    const DlgTemplate* template_;
    std::vector<ResizeItem> items_;
    std::vector<CRect> wholePlaces_;  ///< of the items in the template
    std::vector<CRect> places_;       ///< the same, at the least size; empty: folded away
    std::vector<Fold> folds_;
    CString section_;
    CSize whole_;  ///< of the template
    CSize least_;
};

}  // namespace pavane

#pragma once

#include "apps/view/PartWindow.h"
#include "pavane/tables/observation/AComponentsTbl.h"

#include <functional>
#include <string>

namespace pavane
{

/// The components of a round's model as a table, or, of a model that stays a map, why there are
/// none.
class RoundComponents : public PartWindow<AComponentsTbl>
{
public:
    std::function<void()> changed;  ///< another list, or another component is chosen
    std::function<void(const CString&)> notice;

    /// Shown in place of an empty table.
    void SetNote(const CString& note);
    const CString& GetNote() const { return note_; }

    void DrawWindow(CDC& dc, CRect& client, CRect& update) override;
    void OnComponentsChanged() override { tell(); }
    void OnComponentSelected() override { tell(); }
    void OnNotice(const CString& text) override;
    CString profileSection() override { return "pavane-clean components"; }

private:
    void tell();

    CString note_;
};

}  // namespace pavane

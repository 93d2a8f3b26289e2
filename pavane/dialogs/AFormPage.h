#pragma once

#include "pavane/dialogs/values/PageForm.h"
#include "pavane/windows/AResizeSheet.h"

#include <span>

namespace pavane
{

/// A control of a page and the field of the form that it shows: an edit its text, a check box or a
/// list to choose from its choice.
struct FormControl {
    unsigned id;
    int field;
    const char* accessName = "";  ///< for screen readers where no label stands before it
};
/// A text of a page and the note of the form that it shows.
struct FormNote {
    unsigned id;
    int note;
};

/// A page over a form: shows what the form holds and hands it what the user does. OK, "Apply" and
/// leaving the page take what stands there, or say what is wrong and stay, with the focus in the
/// field that is wrong and its text selected.
class PAVANE_API AFormPage : public AResizePage
{
public:
    /// Neither template, form nor tables are copied.
    AFormPage(const DlgTemplate& page, const CString& caption, PageForm& form,
              std::span<const FormControl> controls, std::span<const FormNote> notes);

    /// Checks what stands on the page and takes it into the form's record. 1 when it is accepted;
    /// else 0, with a message. Without a window it judges what the form holds.
    int SaveForm();
    /// Shows the form again, after it was changed.
    void ShowForm();

    int OnKillActive() override { return SaveForm(); }
    int OnApply() override { return SaveForm(); }

protected:
    int OnInitDialog() override;
    int OnCommand(unsigned id, unsigned code, CWnd* control) override;
    /// Shows what follows from the fields: notes, what can be used.
    void ShowNotes();
    /// Says why, and puts the focus into the control of the field. 0.
    int Refuse(const FormRefusal& refusal);

private:
    void showField(const FormControl& shown);
    void takeField(const FormControl& shown);

    PageForm& form_;
    std::span<const FormControl> controls_;
    std::span<const FormNote> notes_;
    int isShowing_ = 0;  ///< the page writes its controls itself
};

}  // namespace pavane

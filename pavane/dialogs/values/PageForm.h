#pragma once

#include "platform/api.h"
#include "platform/types.h"

#include <cstddef>
#include <vector>

namespace pavane
{

/// Why what stands on a page is refused, and which field gets the focus.
struct FormRefusal {
    int field = -1;   ///< -1: none is wrong by itself, or all is well
    CString message;  ///< "": all is well

    int isRefused() const { return !message.empty(); }
};

/// What stands on a page, without its window: texts of edits, states of check boxes, chosen lines.
/// The page hands over what the user does and shows what the form holds. Fields count from 0.
class PAVANE_API PageForm
{
public:
    explicit PageForm(int fields) : fields_(static_cast<std::size_t>(fields)) {}
    virtual ~PageForm() = default;

    const CString& text(int field) const { return at(field).text; }
    void setText(int field, const CString& text) { at(field).text = text; }
    /// Of a check box 0 or 1; of a list the line that is chosen, -1 for none.
    int choice(int field) const { return at(field).choice; }
    void setChoice(int field, int choice) { at(field).choice = choice; }

    /// The lines of a list to choose from.
    virtual std::vector<CString> lines(int field) const
    {
        return (void)field, std::vector<CString>();
    }
    virtual int isEnabled(int field) const { return (void)field, 1; }
    /// A line that the page shows about what stands there now; notes count from 0.
    virtual CString note(int which) const { return (void)which, CString(); }
    /// Checks all, and takes it into the record when it is good.
    virtual FormRefusal save() = 0;

private:
    struct Field {
        CString text;
        int choice = 0;
    };
    const Field& at(int field) const { return fields_[static_cast<std::size_t>(field)]; }
    Field& at(int field) { return fields_[static_cast<std::size_t>(field)]; }
    std::vector<Field> fields_;
};

}  // namespace pavane

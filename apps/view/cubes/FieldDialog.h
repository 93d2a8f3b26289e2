#pragma once

#include "platform/CDialog.h"

#include <functional>
#include <vector>

namespace pavane
{

/// A line of a dialog of settings.
struct DialogField {
    enum class Kind { text, choice, check, file };
    Kind kind = Kind::text;
    CString label;                 ///< with '&' before its letter
    CString value;                 ///< a text, "1" or "" of a check box, a line of the choices
    std::vector<CString> choices;  ///< of a choice
    CString entry;                 ///< of the profile, under which it is remembered; "" for none
};

/// Asks for some values, one below the other, and tries them with `accept`, which gets the dialog
/// to ask and to work in front of; when that answers 0 the dialog says `error`, if there is one,
/// and stays. What was accepted is remembered. Non-zero when it was.
int askFields(CWnd* parent, const CString& title, const std::vector<CString>& hints,
              std::vector<DialogField>& fields,
              const std::function<int(CWnd& dialog, CString& error)>& accept,
              const CString& okText = "Make...");

/// The controls of the fields, from the first one on, for tests.
inline constexpr unsigned firstDialogField = 201;

}  // namespace pavane

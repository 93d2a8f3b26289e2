#pragma once

#include "platform/types.h"

#include <functional>

namespace pavane
{

inline constexpr unsigned MB_OK = 0x0000, MB_OKCANCEL = 0x0001, MB_YESNOCANCEL = 0x0003,
                          MB_YESNO = 0x0004, MB_ICONERROR = 0x0010, MB_ICONQUESTION = 0x0020,
                          MB_ICONWARNING = 0x0030, MB_ICONINFORMATION = 0x0040,
                          MB_DEFBUTTON2 = 0x0100;  ///< Enter means the second answer
inline constexpr int IDOK = 1, IDCANCEL = 2, IDYES = 6, IDNO = 7;

/// Shows a message to the user and returns the answer (IDOK ...).
using MessageFunction = int (*)(const CString& text, unsigned type);

/// Replaces the function that shows messages; null brings the first one back: a box in front of the
/// active window when the platform was started for windows, else a line to standard error, answered
/// with IDOK. Returns the function in force before. A thread without windows gets the line too.
///
/// Objects that pictures are made of keep the function that was in force when they were made
/// (MessageReceiver).
PAVANE_API MessageFunction SetMessageFunction(MessageFunction function);
/// The function in force.
PAVANE_API MessageFunction GetMessageFunction();

/// Everything that a user must know goes through here.
PAVANE_API int AfxMessageBox(const CString& text, unsigned type = MB_OK);

/// Who hears what an object has to say: the function in force when the object was made, or another
/// that a host gives it. A copy tells the same.
class PAVANE_API MessageReceiver
{
public:
    using Function = std::function<int(const CString& text, unsigned type)>;
    MessageReceiver() : module_(GetMessageFunction()) {}
    /// An empty function: that of the module as it is now.
    explicit MessageReceiver(Function function)
        : module_(GetMessageFunction()), own_(std::move(function))
    {
    }
    /// Takes over what SetMessageFunction has set since, unless the host gave a function.
    void takeModules() { module_ = GetMessageFunction(); }
    /// Tells the text; the receiver's answer (IDOK ...).
    int tell(const CString& text, unsigned type = MB_OK) const;

private:
    MessageFunction module_;
    Function own_;
};

}  // namespace pavane

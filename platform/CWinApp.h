#pragma once

#include "platform/messages.h"
#include "platform/print_settings.h"

namespace pavane
{

class CWnd;

/// What print commands ask of the program: its main window, and the printer, paper and direction
/// that hold for this run.
class PAVANE_API CWinApp
{
public:
    virtual ~CWinApp();
    /// The main window, null when none was set or when it is gone. Not owned.
    CWnd* GetMainWnd() const;
    void SetMainWnd(CWnd* window);
    CPrintSettings& PrintSettings() { return printSettings_; }
    const CPrintSettings& PrintSettings() const { return printSettings_; }

private:
    HWND mainWindow_ = 0;
    CPrintSettings printSettings_;
};

}  // namespace pavane

#include "platform/CWinApp.h"

#include "platform/CWnd.h"

namespace pavane
{

CWinApp::~CWinApp() = default;

CWnd* CWinApp::GetMainWnd() const { return mainWindow_ ? CWnd::FromHandle(mainWindow_) : nullptr; }

void CWinApp::SetMainWnd(CWnd* window) { mainWindow_ = window ? window->GetSafeHwnd() : 0; }

}  // namespace pavane

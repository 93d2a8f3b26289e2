#pragma once

class QDialog;
class QWidget;

namespace pavane
{

/// Whether the application object is one that windows can be made with.
bool canShowWindows();

/// Colours and font of the controls of an application that is ours: small, light, neutral.
void applyLook();

/// WM_SYSCOLORCHANGE to all windows.
void tellOfColors();

/// Takes the small pictures of some desktops off the buttons of a dialog of the toolkit.
void clearButtonIcons(const QDialog& dialog);

/// Puts the message box behind AfxMessageBox, and takes it away.
void startMessageBox();
void stopMessageBox();

/// The window in front of which a question belongs; null when there is none.
QWidget* frontWindow();

}  // namespace pavane

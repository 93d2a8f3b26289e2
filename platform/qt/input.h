#pragma once

#include "platform/qt/WindowPeer.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

namespace pavane
{

/// The message of an input event for this window, coordinates in its client area; message 0 for an
/// event that has none. `source` is the widget that got it.
MSG inputMessage(const WindowPeer& peer, const QWidget* source, QEvent& event);

/// Send an event's messages to a drawing window.
void deliverMouse(HWND hwnd, const QWidget* source, QMouseEvent& event);
void deliverWheel(HWND hwnd, QWheelEvent& event);
void deliverKey(HWND hwnd, QKeyEvent& event);
void deliverContextMenu(HWND hwnd, QContextMenuEvent& event);
/// Whether Tab, Enter and Escape are this window's even in a dialog.
bool wantsAllKeys(HWND hwnd);
/// Alt with a letter or a digit, which presses the button of that letter wherever the focus is.
bool isAccessKey(const QKeyEvent& event);
/// Whether the dialog around a window takes this key.
bool isDialogKey(HWND hwnd, const QKeyEvent& event);
/// A right press was taken by a message loop: no context menu follows its release.
void takeRightPress(bool taken);
bool wasRightPressTaken();

}  // namespace pavane

#pragma once

#include <QKeyEvent>

namespace pavane
{

/// The virtual key of a key event, 0 when there is none.
int virtualKeyOf(const QKeyEvent& key);
/// MK_... bits of the keys and buttons that are held.
unsigned heldFlags(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);

}  // namespace pavane

#pragma once

#include <string>

namespace pavane
{

/// Presses keys one after the other, each in the dialog that is in front by then; returns before
/// the first. They are named as menus name them, with blanks between: "Tab Ctrl+PgDown Alt+A
/// Return"; what stands in quotes is typed: "'00:30:00'". The test fails when there is no dialog.
void pressKeys(const std::string& keys);

}  // namespace pavane

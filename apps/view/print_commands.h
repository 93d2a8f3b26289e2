#pragma once

#include <memory>
#include <string>

namespace pavane
{

class ABWindow;
class APrintOut;
class CWnd;

/// The print commands of a window: what its user has set in their dialogs holds for the next job of
/// the same document.
class PrintCommands
{
public:
    PrintCommands();
    ~PrintCommands();

    /// Print, Print preview and Page set-up (ViewCommand) of `part`, the part of `window` that has
    /// the keyboard; `title` is the document's. 0 for any other command.
    int run(unsigned id, ABWindow& part, const std::string& title, CWnd& window);

private:
    std::unique_ptr<APrintOut> out_;
};

}  // namespace pavane

#include "platform/message.h"

#include <cstdio>

namespace pavane
{

namespace
{

int printLine(const CString& text, unsigned)
{
    std::fprintf(stderr, "%s\n", text.c_str());
    return IDOK;
}

MessageFunction messageFunction = printLine;

}  // namespace

MessageFunction SetMessageFunction(MessageFunction function)
{
    const MessageFunction before = messageFunction;
    messageFunction = function ? function : printLine;
    return before;
}

int AfxMessageBox(const CString& text, unsigned type) { return messageFunction(text, type); }

}  // namespace pavane

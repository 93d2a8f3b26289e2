#include "platform/core/message_default.h"

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

MessageFunction defaultFunction = printLine;
MessageFunction messageFunction = printLine;
void (*beforeMessage)() = nullptr;

}  // namespace

void setDefaultMessageFunction(MessageFunction function)
{
    const MessageFunction before = defaultFunction;
    defaultFunction = function ? function : printLine;
    if (messageFunction == before)
        messageFunction = defaultFunction;
}

MessageFunction SetMessageFunction(MessageFunction function)
{
    const MessageFunction before = messageFunction;
    messageFunction = function ? function : defaultFunction;
    return before;
}

void setBeforeMessage(void (*prepare)()) { beforeMessage = prepare; }

int AfxMessageBox(const CString& text, unsigned type)
{
    if (beforeMessage)
        beforeMessage();
    return messageFunction(text, type);
}

}  // namespace pavane

#include "platform/core/message_default.h"

#include <atomic>
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

std::atomic<MessageFunction> defaultFunction = printLine;
std::atomic<MessageFunction> messageFunction = printLine;
std::atomic<void (*)()> beforeMessage = nullptr;

void prepare()
{
    if (void (*const before)() = beforeMessage)
        before();
}

}  // namespace

void setDefaultMessageFunction(MessageFunction function)
{
    const MessageFunction now = function ? function : printLine;
    MessageFunction before = defaultFunction.exchange(now);
    (void)messageFunction.compare_exchange_strong(before, now);
}

MessageFunction SetMessageFunction(MessageFunction function)
{
    return messageFunction.exchange(function ? function : defaultFunction.load());
}

MessageFunction GetMessageFunction() { return messageFunction; }

void setBeforeMessage(void (*function)()) { beforeMessage = function; }

int AfxMessageBox(const CString& text, unsigned type)
{
    prepare();
    return messageFunction.load()(text, type);
}

int MessageReceiver::tell(const CString& text, unsigned type) const
{
    prepare();
    return own_ ? own_(text, type) : module_(text, type);
}

int printMessage(const CString& text) { return printLine(text, MB_OK); }

}  // namespace pavane

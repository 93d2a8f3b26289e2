#include "platform/message_translator.h"

#include <utility>

namespace pavane
{

namespace
{

MessageTranslator current = nullptr;

}  // namespace

MessageTranslator SetMessageTranslator(MessageTranslator translator)
{
    return std::exchange(current, translator);
}

int OfferToTranslator(const MSG& message) { return current ? current(message) : 0; }

}  // namespace pavane

#include "platform/core/DeviceBackend.h"

#include "posix/ForkGate.h"

#include <atomic>

namespace pavane
{

namespace
{

std::atomic<GraphicsHook*> installedHook = nullptr;

}  // namespace

VectorDevice::~VectorDevice() = default;
FontProgram::~FontProgram() = default;
TextFace::~TextFace() = default;
GraphicsHook::~GraphicsHook() = default;
DeviceBackend::~DeviceBackend() = default;

GraphicsHook* setGraphicsHook(GraphicsHook* hook) { return installedHook.exchange(hook); }
GraphicsHook* graphicsHook()
{
    return isForkedMidWork() ? nullptr : installedHook.load(std::memory_order_acquire);
}

const char* noPlatformText()
{
    return isForkedMidWork()
               ? forkedText
               : "Text is left out of pictures made before InitPlatform: there are no "
                 "fonts yet";
}

}  // namespace pavane

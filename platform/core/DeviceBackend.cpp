#include "platform/core/DeviceBackend.h"

#include "platform/core/PageDocument.h"

#include <utility>

namespace pavane
{

namespace
{

GraphicsHook* installedHook = nullptr;

}  // namespace

VectorDevice::~VectorDevice() = default;
TextFace::~TextFace() = default;
GraphicsHook::~GraphicsHook() = default;
DeviceBackend::~DeviceBackend() = default;

GraphicsHook* setGraphicsHook(GraphicsHook* hook) { return std::exchange(installedHook, hook); }
GraphicsHook* graphicsHook() { return installedHook; }

}  // namespace pavane

#include "platform/core/DeviceBackend.h"

#include <utility>

namespace pavane
{

namespace
{

GraphicsHook* installedHook = nullptr;

}  // namespace

VectorDevice::~VectorDevice() = default;
FontProgram::~FontProgram() = default;
TextFace::~TextFace() = default;
GraphicsHook::~GraphicsHook() = default;
DeviceBackend::~DeviceBackend() = default;

GraphicsHook* setGraphicsHook(GraphicsHook* hook) { return std::exchange(installedHook, hook); }
GraphicsHook* graphicsHook() { return installedHook; }

}  // namespace pavane

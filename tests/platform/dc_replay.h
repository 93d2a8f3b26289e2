#pragma once

#include "platform/picture.h"

#include "json_value.h"

/// The recorded pixels of a case.
pavane::CPicture recordedPicture(const JsonValue& test);

/// Carries out the recorded steps of `test` on a white picture. `others` gives the pictures that a
/// step may copy from. Returns what differs from the recorded pixels and answers, "" for nothing.
std::string replay(const JsonValue& test, std::map<std::string, pavane::CPicture>& others);

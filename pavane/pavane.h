#pragma once

/// Everything of the library in one include; hosts may as well include single headers.
#include "platform/CDC.h"
#include "platform/message.h"
#include "platform/picture.h"
#include "platform/platform.h"
#include "tessel/fits_map.h"

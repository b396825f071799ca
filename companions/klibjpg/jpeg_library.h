// libjpeg-turbo, included in the one order that compiles everywhere: its header needs stdio, and on
// Windows the system's header must come first, because both define INT32 and boolean.
#pragma once

// clang-format off
#include "platform/system.h"
#include <cstdio>
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

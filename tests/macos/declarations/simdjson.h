// SPDX-License-Identifier: MIT
// The package's own header. It lies among headers of Linux that are not to be found from here.
#pragma once

#include "/usr/include/simdjson.h"

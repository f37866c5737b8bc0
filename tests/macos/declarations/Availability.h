// SPDX-License-Identifier: MIT
#pragma once

#include "AvailabilityMacros.h"

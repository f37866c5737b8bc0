// SPDX-License-Identifier: MIT
// What Qt's headers ask about the system that they are compiled for.
#pragma once

#define __MAC_11_0 110000
#define __MAC_12_0 120000
#define __MAC_13_0 130000
#define __MAC_14_0 140000
#define __MAC_15_0 150000
#define __MAC_OS_X_VERSION_MIN_REQUIRED 150000
#define __MAC_OS_X_VERSION_MAX_ALLOWED 150500
#define MAC_OS_X_VERSION_MIN_REQUIRED 150000
#define MAC_OS_X_VERSION_MAX_ALLOWED 150500

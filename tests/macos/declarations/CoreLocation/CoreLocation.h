// SPDX-License-Identifier: MIT
#pragma once

#import <Foundation/Foundation.h>

#include "SdkMacros.h"

typedef double CLLocationDegrees;

typedef struct CLLocationCoordinate2D {
    CLLocationDegrees latitude;
    CLLocationDegrees longitude;
} CLLocationCoordinate2D;

SDK_EXTERN CLLocationCoordinate2D CLLocationCoordinate2DMake(CLLocationDegrees latitude, CLLocationDegrees longitude);

// SPDX-License-Identifier: MIT
// Shared by the declarations. Availability becomes Clang's own attribute, so that a call of something newer than the
// deployment target is reported.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#define SDK_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define SDK_NONNULL_END _Pragma("clang assume_nonnull end")
#define SDK_EXTERN extern "C"
#define SDK_RETAINED __attribute__((cf_returns_retained))
#define SDK_BRIDGED(T) __attribute__((objc_bridge(T)))
// As in C++ on macOS: the option type is the integer itself, so that | and & need no cast.
#define SDK_OPTIONS(type, name)                                                                                        \
    type name;                                                                                                         \
    enum __attribute__((flag_enum, enum_extensibility(open))) : name
#define SDK_ENUM(type, name)                                                                                           \
    enum __attribute__((enum_extensibility(open))) name : type name;                                                   \
    enum name : type
#define SDK_AVAILABLE(version) __attribute__((availability(macos, introduced = version)))
// <sys/cdefs.h> has it on macOS.
#define __unused __attribute__((__unused__))

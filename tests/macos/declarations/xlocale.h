// SPDX-License-Identifier: MIT
// What libc++ takes from the C library of macOS and the one here does not have.
#pragma once

#include <locale.h>
#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
struct lconv* localeconv_l(locale_t locale);
int asprintf_l(char** text, locale_t locale, const char* format, ...);
int snprintf_l(char* text, size_t size, locale_t locale, const char* format, ...);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);
#ifdef __cplusplus
}
#endif

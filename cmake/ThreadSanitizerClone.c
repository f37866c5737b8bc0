// SPDX-License-Identifier: MIT
// ThreadSanitizer 19 takes every clone for a fork. One that shares the memory of its parent until it executes a
// program, as Qt starts programs, then ends both with "CHECK failed". So clones pass it by; threads are not made this
// way.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <sched.h>
#include <stdarg.h>

typedef int (*Clone)(int (*run)(void*), void* stack, int flags, void* argument, ...);

int clone(int (*run)(void*), void* stack, int flags, void* argument, ...) {
    va_list further;
    va_start(further, argument);
    void* const parentIdentifier = va_arg(further, void*);
    void* const threadStorage = va_arg(further, void*);
    void* const childIdentifier = va_arg(further, void*);
    va_end(further);
    const Clone real = (Clone)dlsym(RTLD_NEXT, "clone");
    return real(run, stack, flags, argument, parentIdentifier, threadStorage, childIdentifier);
}

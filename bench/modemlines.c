// SPDX-License-Identifier: GPL-3.0-or-later
/* A terminal program that insists on modem lines gives up a pseudo-terminal, which has none. Preloaded, this
 * tells it that all of them are on.
 *   cc -O2 -shared -fPIC -o modemlines.so modemlines.c -ldl */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdarg.h>
#include <sys/ioctl.h>

typedef int (*ioctl_function)(int, unsigned long, ...);

int ioctl(int descriptor, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  void* argument = va_arg(arguments, void*);
  va_end(arguments);

  if (request == TIOCMGET) {
    *(int*)argument = TIOCM_CTS | TIOCM_DSR | TIOCM_CAR | TIOCM_DTR | TIOCM_RTS;
    return 0;
  }
  if (request == TIOCMSET || request == TIOCMBIS || request == TIOCMBIC) return 0;

  static ioctl_function original;
  if (original == 0) original = (ioctl_function)dlsym(RTLD_NEXT, "ioctl");
  return original(descriptor, request, argument);
}

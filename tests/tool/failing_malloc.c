/* Preloaded into the tool: from the allocation whose number, from 1, is in QVN_FAILS_AT none succeeds. Counts
 * from the beginning of main() to its end: libraries are loaded before it and unloaded after it, which they
 * cannot do without memory. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <stddef.h>
#include <stdlib.h>

extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* old, size_t size);

typedef int (*Main)(int, char**, char**);
typedef int (*Start)(Main, int, char**, void (*)(void), void (*)(void), void (*)(void), void*);

static Main real_main;
static long left = -1;

static int counting_main(int argc, char** argv, char** environment) {
  const char* const text = getenv("QVN_FAILS_AT");
  left = text == NULL ? -1 : atol(text);
  const int status = real_main(argc, argv, environment);
  left = -1;
  return status;
}

int __libc_start_main(Main main, int argc, char** argv, void (*init)(void), void (*fini)(void),
                      void (*rtld_fini)(void), void* stack_end) {
  union {
    void* symbol;
    Start function;
  } start;
  real_main = main;
  start.symbol = dlsym(RTLD_NEXT, "__libc_start_main");
  return start.function(counting_main, argc, argv, init, fini, rtld_fini, stack_end);
}

static int fails(void) {
  if (left > 0) {
    --left;
  }
  if (left == 0) {
    errno = ENOMEM;
  }
  return left == 0;
}

void* malloc(size_t size) { return fails() ? NULL : __libc_malloc(size); }
void* calloc(size_t count, size_t size) { return fails() ? NULL : __libc_calloc(count, size); }
void* realloc(void* old, size_t size) { return fails() ? NULL : __libc_realloc(old, size); }

/* Preloaded into the tool: moving a file fails once, at the move whose number, from 1, is in QVN_FAILS_AT. */
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>

int rename(const char* from, const char* to) {
  static int count = 0;
  const char* const fails_at = getenv("QVN_FAILS_AT");
  if (fails_at != NULL && ++count == atoi(fails_at)) {
    errno = EIO;
    return -1;
  }
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

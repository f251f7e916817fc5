/* Keeps a test program from writing the library's logs: they fail to open. */

#define _POSIX_C_SOURCE 200809L

#include <fcntl.h>
#include <stdio.h>
#include <string.h>

FILE *fopen(const char *path, const char *mode) {
    const int is_log = strncmp(path, "/mnt/", 5) == 0 || strncmp(path, "/bootflash/", 11) == 0;
    const int descriptor = is_log ? -1 : open(path, O_RDONLY);
    return descriptor < 0 ? NULL : fdopen(descriptor, mode);
}

/* The least that a safe rewrite of a file costs: read it, write a copy, sync that, rename it over
 * the file. */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

int main(int argc, char **argv) {
    struct stat status;
    char copy[4096];
    const int from = argc == 2 ? open(argv[1], O_RDONLY) : -1;
    if (from < 0 || fstat(from, &status) != 0)
        return 2;
    const size_t size = (size_t)status.st_size;
    char *bytes = malloc(size);
    snprintf(copy, sizeof copy, "%s.copy", argv[1]);
    const int to = open(copy, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    return !bytes || read(from, bytes, size) != (ssize_t)size ||
           write(to, bytes, size) != (ssize_t)size || fsync(to) != 0 || close(to) != 0 ||
           rename(copy, argv[1]) != 0;
}

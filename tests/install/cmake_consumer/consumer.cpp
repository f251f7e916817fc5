// Runs every converter on the configuration below its argument, and has release texts of its own.

#include <libinfraconvertascii.h>

#include <cstring>

// In place of the library's stand-in.
extern "C" const char *srg_sw_ver_file_get(const char *path) {
    return path && std::strcmp(path, "target") == 0 ? "5.0(3)" : "4.1(2)";
}

int main(int argc, char **argv) {
    char to[16] = "", from[16] = "";
    infraconvertascii_get_version("target", to, sizeof to);
    infraconvertascii_get_version("source", from, sizeof from);
    const infraconvertascii_args_t args = {argc > 1 ? argv[1] : "", "package", to, from};
    infraconvertascii_startup_all(&args);
    return std::strcmp(to, "5.0(3)");
}

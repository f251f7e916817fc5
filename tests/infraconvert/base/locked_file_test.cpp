// A file that is locked and looked at again: every way in which others may have changed it.

#include "base/locked_file.h"

#include "base/errors.h"
#include "infraconvert/workspace.h"

#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using infraconvert::locked_file_t;

TEST(locked_file, tells_of_every_change) {
    const support::workspace_t here;
    const fs::path file = here.path("switch.cfg"), link = here.path("link");
    const struct {
        const char *name;
        std::function<void()> change;
    } rows[] = {
        {"longer", [&] { here.write("switch.cfg", "npiv enable\nvlan 1\n"); }},
        {"as long", [&] { here.write("switch.cfg", "npiv enablE\n"); }},
        {"as long, with the old times",
         [&] {
             struct stat status = {};
             stat(file.c_str(), &status);
             here.write("switch.cfg", "npiv enablE\n");
             const timespec times[] = {status.st_atim, status.st_mtim};
             utimensat(AT_FDCWD, file.c_str(), times, 0);
         }},
        {"replaced by the same",
         [&] {
             here.write("new", "npiv enable\n");
             fs::rename(here.path("new"), file);
         }},
        {"other rights", [&] { fs::permissions(file, fs::perms(0600)); }},
        {"gone", [&] { fs::remove(file); }},
    };
    for (const auto &row : rows) {
        here.write("switch.cfg", "npiv enable\n");
        fs::permissions(file, fs::perms(0644));
        fs::remove(link);
        fs::create_symlink("switch.cfg", link);
        const locked_file_t locked(link);
        EXPECT_NO_THROW(locked.look_again("npiv enable\n")) << row.name;
        row.change();
        EXPECT_THROW(locked.look_again("npiv enable\n"), infraconvert::run_error_t) << row.name;
    }
}

TEST(locked_file, is_for_one_at_a_time) {
    const support::workspace_t here;
    here.write("switch.cfg", "npiv enable\n");
    const std::string file = here.path("switch.cfg");
    {
        const locked_file_t first(file);
        EXPECT_THROW(const locked_file_t second(file), infraconvert::run_error_t);
    }
    EXPECT_NO_THROW(const locked_file_t third(file));
    EXPECT_THROW(const locked_file_t none(file + ".none"), infraconvert::input_error_t);
}

} // namespace

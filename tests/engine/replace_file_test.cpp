// Replacing a file that is not there, not a file, or whose neighbours have the names to be used.

#include "engine/replace_file.h"
#include "support/converter_process.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(replace_file, a_file_that_is_not_there_is_made_or_left_out) {
    const support::temporary_directory place;
    const std::string file = place.path() + "/new.cfg";
    {
        engine::replace_file_t given_up;
        ASSERT_TRUE(given_up.begin(file.c_str()) && given_up.write("a"));
    }
    EXPECT_FALSE(fs::exists(file));
    engine::replace_file_t replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()) && replacement.write("a") && replacement.commit());
    EXPECT_EQ(support::read_file(file), "a");
}

TEST(replace_file, a_second_name_keeps_the_old_text_until_the_end) {
    const support::temporary_directory place;
    const std::string file = place.path() + "/a.cfg", second = place.path() + "/second";
    support::write_file(file, "old text");
    fs::create_hard_link(file, second);
    {
        engine::replace_file_t given_up;
        ASSERT_TRUE(given_up.begin(file.c_str()) && given_up.write("new"));
    }
    EXPECT_EQ(support::read_file(second), "old text");
    engine::replace_file_t replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()) && replacement.write("new") &&
                replacement.commit());
    EXPECT_EQ(support::read_file(second), "new");
}

TEST(replace_file, a_device_is_written_to) {
    engine::replace_file_t replacement;
    EXPECT_TRUE(replacement.begin("/dev/null") && replacement.write("a") && replacement.commit());
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(replace_file, what_a_power_cut_left_behind_is_not_touched) {
    const support::temporary_directory place;
    const std::string file = place.path() + "/a.cfg";
    const std::string left =
        place.path() + "/.a.cfg.infraconvert-" + std::to_string(getpid()) + "-0";
    support::write_file(file, "old");
    support::write_file(left, "left behind");
    engine::replace_file_t replacement;
    ASSERT_TRUE(replacement.begin(file.c_str()) && replacement.write("new") &&
                replacement.commit());
    EXPECT_EQ(support::read_file(file), "new");
    EXPECT_EQ(support::read_file(left), "left behind");
}

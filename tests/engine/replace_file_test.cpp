// Replacing a file that is not there, not a file, or that others look at in the meantime.

#include "engine/replace_file.h"
#include "support/converter_process.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

TEST(replace_file, a_file_that_is_not_there_is_made_or_left_out) {
    const support::temporary_directory_t place;
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
    const support::temporary_directory_t place;
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

namespace {

// Saves "new", and tells whether the file was replaced, not written in place.
bool is_replaced(const std::string &file) {
    struct stat before = {}, after = {};
    stat(file.c_str(), &before);
    engine::replace_file_t replacement;
    EXPECT_TRUE(replacement.begin(file.c_str()) && replacement.write("new") &&
                replacement.commit());
    EXPECT_EQ(support::read_file(file), "new");
    stat(file.c_str(), &after);
    return before.st_ino != after.st_ino;
}

} // namespace

TEST(replace_file, a_name_that_others_guessed_or_that_is_as_long_as_a_name_may_be) {
    const support::temporary_directory_t place;
    const std::string guessed = place.path() + "/a.cfg", longest = place.path() + '/';
    for (int i = 0; i < 100; i++)
        support::write_file(place.path() + "/.a.cfg.infraconvert-" + std::to_string(getpid()) +
                                '-' + std::to_string(i),
                            "squatter");
    for (const std::string &file : {guessed, longest + std::string(255, 'n')}) {
        support::write_file(file, "old");
        EXPECT_TRUE(is_replaced(file)) << file.size();
    }
}

TEST(replace_file, what_somebody_else_makes_meanwhile_stays) {
    for (const bool commits : {false, true}) {
        const support::temporary_directory_t place;
        const std::string file = place.path() + "/new.cfg";
        {
            engine::replace_file_t late;
            ASSERT_TRUE(late.begin(file.c_str()) && late.write("late"));
            EXPECT_FALSE(fs::exists(file)) << "nobody sees it before it is whole";
            support::write_file(file, "of somebody else");
            EXPECT_TRUE(!commits || (!late.commit() && errno == EEXIST));
        }
        EXPECT_EQ(support::read_file(file), "of somebody else");
        EXPECT_EQ(std::distance(fs::directory_iterator(place.path()), {}), 1);
    }
}

TEST(replace_file, what_the_dead_left_behind_is_removed_and_nothing_else) {
    const support::temporary_directory_t place;
    const auto path = [&](const std::string &name) { return place.path() + '/' + name; };
    const std::string file = path("a.cfg"), mark = ".infraconvert-";
    const std::set<std::string> stay = {
        "a.cfg",
        ".a.cfg" + mark + "00000000000000aa", // locked: its writer lives
        ".a.cfg" + mark + "00000000000000bb", // a second name of the next
        "saved",
        ".a.cfg" + mark + "00000000000000cc", // a link
        ".a.cfg" + mark + "00000000000000dd", // no file
        ".a.cfg" + mark + "of-somebody-else",
        ".b.cfg" + mark + "0000000000000000",
    };
    for (const std::string &name : stay) {
        if (name != "saved" && !name.ends_with("cc") && !name.ends_with("dd"))
            support::write_file(path(name), "old");
    }
    fs::create_hard_link(path(".a.cfg" + mark + "00000000000000bb"), path("saved"));
    fs::create_symlink("saved", path(".a.cfg" + mark + "00000000000000cc"));
    mkfifo(path(".a.cfg" + mark + "00000000000000dd").c_str(), 0600);
    support::write_file(path(".a.cfg" + mark + "0123456789abcdef"), "left behind");
    const engine::file_t alive =
        engine::open_at(AT_FDCWD, path(".a.cfg" + mark + "00000000000000aa").c_str(), O_RDWR);
    ASSERT_TRUE(engine::lock(alive.descriptor()));
    EXPECT_TRUE(is_replaced(file));
    std::set<std::string> names;
    for (const auto &entry : fs::directory_iterator(place.path()))
        names.insert(entry.path().filename());
    EXPECT_EQ(names, stay);
}

TEST(replace_file, what_was_left_behind_is_of_the_caller_or_of_the_owner) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make a file of another owner";
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/a.cfg", mark = place.path() + "/.a.cfg.infraconvert-";
    constexpr uid_t owner = 1234, somebody = 4321;
    const struct {
        std::string name;
        uid_t user;
        bool stays;
    } rows[] = {{file, owner, true},
                {mark + "00000000000000aa", owner, false},
                {mark + "00000000000000bb", geteuid(), false},
                {mark + "00000000000000cc", somebody, true}};
    for (const auto &row : rows) {
        support::write_file(row.name, "old");
        ASSERT_EQ(chown(row.name.c_str(), row.user, row.user), 0);
    }
    EXPECT_TRUE(is_replaced(file));
    for (const auto &row : rows)
        EXPECT_EQ(fs::exists(row.name), row.stays) << row.name;
}

TEST(replace_file, a_path_without_a_name_is_none) {
    engine::replace_file_t replacement;
    EXPECT_FALSE(replacement.begin(""));
    EXPECT_EQ(errno, EISDIR);
}

TEST(replace_file, two_writers_at_once_do_not_take_each_other_for_dead) {
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/a.cfg";
    support::write_file(file, "old");
    engine::replace_file_t first, second;
    ASSERT_TRUE(first.begin(file.c_str()) && first.write("first"));
    ASSERT_TRUE(second.begin(file.c_str()) && second.write("second"));
    EXPECT_TRUE(first.commit() && second.commit());
    EXPECT_EQ(support::read_file(file), "second");
    EXPECT_EQ(std::distance(fs::directory_iterator(place.path()), {}), 1);
}

TEST(replace_file, may_be_called_off_up_to_the_first_byte) {
    for (const auto &[has_second_link, writes] :
         {std::pair(false, true), std::pair(true, true), std::pair(true, false)}) {
        const support::temporary_directory_t place;
        const std::string file = place.path() + "/a.cfg";
        support::write_file(file, "old");
        if (has_second_link)
            fs::create_hard_link(file, place.path() + "/second");
        {
            engine::replace_file_t replacement({.before_first_byte = [&] {
                EXPECT_EQ(support::read_file(file), "old");
                errno = ECANCELED;
                return false;
            }});
            ASSERT_TRUE(replacement.begin(file.c_str()));
            EXPECT_FALSE((!writes || replacement.write("new")) && replacement.commit());
            EXPECT_EQ(errno, ECANCELED);
        }
        EXPECT_EQ(support::read_file(file), "old");
        EXPECT_EQ(std::distance(fs::directory_iterator(place.path()), {}), has_second_link ? 2 : 1);
    }
}

// What somebody does to the target between the last look at it and its replacement.
TEST(replace_file, what_is_not_expected_is_put_back) {
    const struct {
        const char *name;
        std::function<void(const std::string &file)> edit;
        bool is_put_back;
    } rows[] = {
        {"nothing", [](const std::string &) {}, false},
        {"written", [](const std::string &file) { support::write_file(file, "edited"); }, true},
        {"replaced",
         [](const std::string &file) {
             support::write_file(file + "~", "edited");
             fs::rename(file + "~", file);
         },
         true},
    };
    for (const auto &row : rows) {
        const support::temporary_directory_t place;
        const std::string file = place.path() + "/a.cfg";
        support::write_file(file, "old");
        const auto edit = [&] {
            row.edit(file);
            return true;
        };
        const auto is_old = [](int replaced) {
            char text[16];
            return pread(replaced, text, sizeof text, 0) == 3;
        };
        {
            engine::replace_file_t replacement({.before_first_byte = edit, .is_expected = is_old});
            ASSERT_TRUE(replacement.begin(file.c_str()) && replacement.write("new"));
            EXPECT_EQ(replacement.commit(), !row.is_put_back) << row.name;
            EXPECT_TRUE(!row.is_put_back || errno == ESTALE) << row.name;
        }
        EXPECT_EQ(support::read_file(file), row.is_put_back ? "edited" : "new") << row.name;
        EXPECT_EQ(std::distance(fs::directory_iterator(place.path()), {}), 1) << row.name;
    }
}

// What a file made from another may be read by: never more people than that, nor than before.
TEST(replace_file, rights_of_another_file) {
    using rights_t = engine::replace_rules_t::rights_t;
    const struct {
        const char *name;
        rights_t rights;
        mode_t source, target, wanted; // target 0: a new file
        bool has_second_link;
    } rows[] = {
        {"new", rights_t::of_source, 0640, 0, 0640, false},
        {"new, nobody else's", rights_t::of_owner, 0644, 0, 0600, false},
        {"wider before", rights_t::of_source, 0600, 0644, 0600, false},
        {"narrower before", rights_t::of_source, 0644, 0600, 0600, false},
        {"no set-user-ID", rights_t::of_source, 04755, 0, 0755, false},
        {"in place, the same", rights_t::of_source, 0644, 0644, 0644, true},
        {"in place, wider before", rights_t::of_source, 0600, 0644, 0600, true},
        {"in place, nobody else's", rights_t::of_owner, 0644, 0664, 0600, true},
    };
    for (const auto &row : rows) {
        const support::temporary_directory_t place;
        const std::string source = place.path() + "/source", file = place.path() + "/file";
        support::write_file(source, "source");
        chmod(source.c_str(), row.source);
        if (row.target != 0) {
            support::write_file(file, "old");
            chmod(file.c_str(), row.target);
        }
        if (row.has_second_link)
            fs::create_hard_link(file, place.path() + "/second");
        const engine::file_t from = engine::open_at(AT_FDCWD, source.c_str(), O_RDONLY);
        engine::replace_file_t replacement({.rights = row.rights, .source = from.descriptor()});
        ASSERT_TRUE(replacement.begin(file.c_str())) << row.name;
        struct stat status = {};
        for (const auto &entry : fs::directory_iterator(place.path())) {
            stat(entry.path().c_str(), &status);
            const bool is_beside = entry.path().filename().string().starts_with(".file.");
            EXPECT_TRUE(!is_beside || (status.st_mode & 0077) == 0) << row.name;
        }
        ASSERT_TRUE(replacement.write("new") && replacement.commit()) << row.name;
        stat(file.c_str(), &status);
        EXPECT_EQ(status.st_mode & 07777, row.wanted) << row.name;
    }
}

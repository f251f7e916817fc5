// A plan applied and taken back, with conversions that a test makes up.

#include "window/apply.h"

#include "base/errors.h"
#include "infraconvert/workspace.h"
#include "window/planning.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/file.h>
#include <sys/stat.h>

#include <fstream>
#include <thread>

namespace {

using namespace infraconvert;
using support::contains;
using strings_t = std::vector<std::string>;
namespace fs = std::filesystem;

std::string converted(const std::string &text) { return "converted " + text; }

class window_test_t : public ::testing::Test {
  protected:
    window_test_t() : folder(here.path("window.json")) { folder.make(); }

    // Plans a file with this text, or whatever else the state says.
    planned_t &add(const std::string &name, const std::string &text,
                   planned_state_t state = planned_state_t::ready) {
        here.write(name, text);
        planned_t planned;
        planned.path = name;
        planned.state = state;
        planned.route = {"4.1(2)", "5.0(3)"};
        planned.input_digest = folder.digest(text);
        planned.result_digest =
            folder.digest(state == planned_state_t::unchanged ? text : converted(text));
        plan.configurations.push_back(planned);
        return plan.configurations.back();
    }

    window_t window() {
        states.clear();
        return {
            .folder = folder,
            .plan = plan,
            .convert = [](const planned_t &, const std::string &text) { return converted(text); },
            .jobs = 2,
            .tell = [this](size_t, const standing_state_t &state) { states.push_back(state); }};
    }

    // "converted! refused stale", with "!" for what was done now.
    std::string told() const {
        std::string text;
        for (const standing_state_t &state : states)
            text += (text.empty() ? "" : " ") + std::string(standing_name(state.standing)) +
                    (state.done ? "!" : "");
        return text;
    }
    std::string applied() {
        journal_t journal(folder);
        apply(window(), journal);
        return told();
    }
    std::string undone() {
        journal_t journal(folder);
        undo(window(), journal);
        return told();
    }
    std::string looked_at() {
        look_at(window());
        return told();
    }
    void journal_line(deed_t deed, size_t index) {
        journal_t(folder).add(deed, plan.configurations[index]);
    }

    support::workspace_t here;
    plan_folder_t folder;
    plan_t plan;
    std::vector<standing_state_t> states;
};

TEST_F(window_test_t, converts_what_is_agreed_once_and_takes_it_back) {
    add("a.cfg", "a");
    add("same.cfg", "same", planned_state_t::unchanged);
    add("lossy.cfg", "lossy", planned_state_t::refused).refused = {"IC041", "IC043"};
    add("bad.cfg", "bad", planned_state_t::failed).failed_services = {"qos"};
    chmod(here.path("a.cfg").c_str(), 0640);
    EXPECT_EQ(looked_at(), "ready unchanged refused failed");
    EXPECT_FALSE(here.has("window.json.private/journal"));

    EXPECT_EQ(applied(), "converted! unchanged refused failed");
    EXPECT_EQ(states[2].exit_status, exit_findings);
    EXPECT_TRUE(contains(states[2].why, "IC041, IC043"));
    EXPECT_EQ(states[3].exit_status, exit_failed);
    EXPECT_EQ(here.read("a.cfg"), "converted a");
    EXPECT_EQ(here.read("lossy.cfg"), "lossy");
    EXPECT_EQ(applied(), "converted unchanged refused failed");
    EXPECT_EQ(here.read("a.cfg"), "converted a");

    EXPECT_EQ(undone(), "ready! unchanged refused failed");
    EXPECT_EQ(here.read("a.cfg"), "a");
    EXPECT_EQ(fs::status(here.path("a.cfg")).permissions(), fs::perms{0640});
    EXPECT_EQ(undone(), "ready unchanged refused failed");
    EXPECT_EQ(applied(), "converted! unchanged refused failed");
}

TEST_F(window_test_t, may_have_configurations_of_the_same_bytes) {
    for (const char *name : {"a.cfg", "b.cfg", "c.cfg", "d.cfg", "e.cfg", "f.cfg"})
        add(name, "same");
    EXPECT_EQ(applied(), "converted! converted! converted! converted! converted! converted!");
    EXPECT_EQ(undone(), "ready! ready! ready! ready! ready! ready!");
}

TEST_F(window_test_t, leaves_alone_what_others_changed) {
    for (const char *name : {"edited.cfg", "gone.cfg", "after.cfg", "theirs.cfg", "lost.cfg"})
        add(name, name);
    here.write("edited.cfg", "edited");
    here.write("theirs.cfg", converted("theirs.cfg"));
    fs::remove(here.path("gone.cfg"));
    EXPECT_EQ(applied(), "stale unusable converted! converted converted!");
    EXPECT_TRUE(contains(states[3].why, "not converted with this plan"));
    EXPECT_EQ(states[3].exit_status, exit_done);
    EXPECT_EQ(states[0].exit_status, exit_unusable);
    EXPECT_TRUE(contains(states[1].why, "gone.cfg: No such file")) << states[1].why;

    here.write("after.cfg", "edited");
    fs::remove(folder.original(plan.configurations[4].input_digest));
    EXPECT_EQ(looked_at(), "stale unusable stale converted converted");
    EXPECT_EQ(states[4].exit_status, exit_unusable);
    EXPECT_TRUE(contains(states[4].why, "originals any more, so undo cannot put it back"));
    EXPECT_EQ(undone(), "stale unusable stale converted converted");
    for (const size_t never_converted : {0, 1})
        EXPECT_EQ(states[never_converted].why, "");
    EXPECT_TRUE(contains(states[2].why, "/originals/")) << states[2].why;
    EXPECT_TRUE(contains(states[3].why, "not converted with this plan"));
    EXPECT_EQ(here.read("after.cfg"), "edited");
    EXPECT_EQ(here.read("theirs.cfg"), "converted theirs.cfg");
    EXPECT_EQ(here.read("lost.cfg"), "converted lost.cfg");
}

TEST_F(window_test_t, refuses_another_result_and_another_original) {
    add("a.cfg", "a").result_digest = folder.digest("another");
    add("b.cfg", "b");
    EXPECT_EQ(applied(), "failed converted!");
    EXPECT_EQ(states[0].exit_status, exit_failed);
    EXPECT_TRUE(contains(states[0].why, "another result"));
    EXPECT_EQ(here.read("a.cfg"), "a");
    std::ofstream(folder.original(plan.configurations[1].input_digest)) << "forged";
    EXPECT_EQ(looked_at(), "ready converted");
    EXPECT_TRUE(contains(states[1].why, "is not what was kept")) << states[1].why;
    EXPECT_EQ(undone(), "ready converted");
    EXPECT_EQ(states[1].exit_status, exit_unusable);
    EXPECT_EQ(here.read("b.cfg"), "converted b");
}

// What a kill leaves at each moment, and what the next run makes of it.
TEST_F(window_test_t, goes_on_after_a_kill_at_any_moment) {
    const std::string input = "original of b", result = converted(input);
    const std::string torn = result.substr(0, 7) + input.substr(7);
    const struct {
        strings_t steps; // of the run that was killed, from an untouched file
        std::string left, look, apply, undo;
    } rows[] = {
        {{"begin"}, input, "ready", "converted!", "ready"},
        {{"begin", "keep"}, input, "ready", "converted!", "ready"},
        {{"begin", "keep"}, result, "converted", "converted", "ready!"},
        {{"begin", "keep"}, torn, "torn", "converted!", "ready!"},
        {{"begin", "keep"}, "edited", "stale", "stale", "stale"},
        {{"begin", "keep", "converted"}, result, "converted", "converted", "ready!"},
        {{"begin", "keep", "converted"}, torn, "stale", "stale", "stale"},
        {{"begin", "keep", "converted", "undoing"}, result, "converted", "converted", "ready!"},
        {{"begin", "keep", "converted", "undoing"}, torn, "torn", "converted!", "ready!"},
        {{"begin", "keep", "converted", "undoing"}, input, "ready", "converted!", "ready"},
    };
    add("b.cfg", input);
    const planned_t &planned = plan.configurations[0];
    for (const auto &row : rows) {
        for (const bool forward : {true, false}) {
            fs::remove_all(here.path("window.json.private/originals"));
            fs::remove(here.path("window.json.private/journal"));
            for (const std::string &step : row.steps) {
                if (step == "keep")
                    here.write("window.json.private/originals/" + planned.input_digest, input);
                else
                    journal_line(step == "begin"       ? deed_t::begin
                                 : step == "converted" ? deed_t::converted
                                                       : deed_t::undoing,
                                 0);
            }
            here.write("b.cfg", row.left);
            EXPECT_EQ(looked_at(), row.look) << row.left;
            EXPECT_EQ(forward ? applied() : undone(), forward ? row.apply : row.undo) << row.left;
            if (row.look == "stale")
                EXPECT_EQ(here.read("b.cfg"), row.left);
            else
                EXPECT_EQ(here.read("b.cfg"), forward ? result : input) << row.left;
            // What was begun has an end in the journal then.
            EXPECT_EQ(last_deeds_t(folder).is_open(planned),
                      row.look == "stale" && row.steps.size() == 2);
        }
    }
}

TEST_F(window_test_t, the_journal_is_mended_where_it_was_cut_short) {
    add("a.cfg", "a");
    applied();
    const std::string journal = here.read("window.json.private/journal");
    const std::string last = journal.substr(journal.rfind('\n', journal.size() - 2) + 1);
    EXPECT_EQ(nlohmann::json::parse(last)["what"], "converted");
    here.write("window.json.private/journal", journal.substr(0, journal.size() - 9));
    EXPECT_EQ(applied(), "converted");
    EXPECT_EQ(here.read("window.json.private/journal"), journal);
    here.write("window.json.private/journal", "nonsense\n" + journal);
    EXPECT_THROW(applied(), input_error_t);
    EXPECT_EQ(here.read("window.json.private/journal"), "nonsense\n" + journal);
}

TEST_F(window_test_t, is_for_one_run_at_a_time) {
    add("a.cfg", "a");
    const journal_t other(folder);
    EXPECT_THROW(applied(), run_error_t);
    EXPECT_THROW(planning_t(folder.plan()), run_error_t);
    EXPECT_EQ(looked_at(), "ready");
    EXPECT_EQ(here.read("a.cfg"), "a");
}

TEST_F(window_test_t, gives_way_to_another_plan_only_when_nothing_is_left_to_undo) {
    add("a.cfg", "a");
    EXPECT_NO_THROW(planning_t(folder.plan()));
    applied();
    EXPECT_THROW(planning_t(folder.plan()), input_error_t);
    undone();
    EXPECT_NO_THROW(planning_t(folder.plan()));
}

TEST_F(window_test_t, has_a_private_folder) {
    const auto rights = [&](const char *name) {
        return fs::status(here.path(name)).permissions() & fs::perms{0777};
    };
    EXPECT_EQ(rights("window.json.private"), fs::perms{0700});
    EXPECT_EQ(rights("window.json.private/key"), fs::perms{0600});
    plan_folder_t again(folder.plan());
    again.make();
    EXPECT_EQ(again.digest("text"), folder.digest("text"));
    plan_folder_t other(here.path("other.json"));
    other.make();
    EXPECT_NE(other.digest("text"), folder.digest("text"));
    chmod(here.path("other.json.private").c_str(), 0750);
    EXPECT_THROW(other.open(), input_error_t);
    fs::remove_all(here.path("other.json.private"));
    EXPECT_THROW(other.open(), input_error_t);
    fs::create_symlink("window.json.private", here.path("other.json.private"));
    EXPECT_THROW(other.make(), input_error_t);
}

TEST_F(window_test_t, names_files_from_the_plan) {
    here.write("site/leaf.cfg", "");
    fs::create_symlink("site", here.path("link"));
    fs::create_symlink("leaf.cfg", here.path("site/newest.cfg"));
    EXPECT_EQ(folder.name_in_plan(here.path("site/leaf.cfg")), "site/leaf.cfg");
    EXPECT_EQ(folder.name_in_plan(here.path("link/newest.cfg")), "site/newest.cfg");
    EXPECT_EQ(folder.file("site/leaf.cfg"), here.path("site/leaf.cfg"));
    const plan_folder_t deeper(here.path("link/window.json"));
    here.write("a.cfg", "");
    EXPECT_EQ(deeper.name_in_plan(here.path("a.cfg")), "../a.cfg");
    EXPECT_TRUE(fs::exists(deeper.file("../a.cfg")));
    EXPECT_EQ(plan_folder_t("window.json").file("a.cfg"), "a.cfg");
}

TEST_F(window_test_t, plans_are_read_as_they_were_written) {
    planned_t &planned = add("caf\xe9.cfg", "a", planned_state_t::refused);
    planned.refused = {"IC041"};
    planned.agreed = {{"IC021", "unused", "2027-03-31", 3}};
    planned.findings = {.errors = 1, .warnings = 2, .notes = 3};
    planned.mended = true;
    plan.mend = "all";
    const std::string text = plan_text(plan);
    here.write("window.json", text);
    const plan_t read = read_plan(folder.plan());
    EXPECT_EQ(plan_text(read), text);
    EXPECT_EQ(read.configurations[0].path, "caf\xe9.cfg");
    EXPECT_EQ(read.configurations[0].agreed[0].findings, 3u);

    nlohmann::json other = nlohmann::json::parse(text);
    other["format_version"] = 1;
    const std::string rows[] = {other.dump(), text.substr(0, text.size() / 2), "{}", ""};
    for (const std::string &row : rows) {
        here.write("window.json", row);
        EXPECT_THROW(read_plan(folder.plan()), input_error_t) << row;
    }
}

} // namespace

// Signals at every system call of a conversion: it happens and the exit status says so, or it
// leaves nothing behind and ends by the signal.
//
// Takes every few of the calls, unless the environment has INFRACONVERT_EVERY_SIGNAL.

#include "infraconvert/traced_command.h"
#include "infraconvert/workspace.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using call_t = support::traced_command_t::call_t;

const std::string original = "npiv enable\nvlan 1\n";
const std::string converted = "feature npiv\nvlan 1\n";
constexpr int signals[] = {SIGTERM, SIGINT, SIGHUP};

// The command in a folder of its own, which also is where its private copies go.
class interrupted_t : public ::testing::Test {
  protected:
    interrupted_t() {
        std::string name =
            fs::path(fs::exists("/dev/shm") ? "/dev/shm" : fs::temp_directory_path()) /
            "infraconvert-test-XXXXXX";
        room = mkdtemp(name.data());
    }
    ~interrupted_t() override { fs::remove_all(room); }

    // As the traced command does, from an untouched file on.
    int run(const std::function<bool(const call_t &)> &chosen, int signal) {
        here.write("switch.cfg", original);
        fs::remove(here.path("switch.cfg.bak"));
        return support::traced_command_t{here.path(""), room, arguments, input, ignores}.run(
            chosen, signal);
    }

    // How many calls there are when nothing interrupts.
    int count_calls() {
        int calls = 0;
        EXPECT_EQ(run([&](const call_t &) { return ++calls < 0; }, 0), 0);
        EXPECT_EQ(here.read("switch.cfg"), converted);
        return calls;
    }

    // "converted", "ended", or what is wrong.
    std::string outcome(int status, int signal) const {
        const std::string file = here.read("switch.cfg");
        if (WIFEXITED(status) && WEXITSTATUS(status) == 0 && file == converted && is_empty(room))
            return "converted";
        if (!WIFSIGNALED(status) || WTERMSIG(status) != signal)
            return "wait status " + std::to_string(status) + " with " + file;
        if (file != original)
            return "ended, but " + file;
        for (const std::string &name : here.names()) {
            if (name != "switch.cfg" && name != "switch.cfg.bak")
                return name + " is left";
        }
        if (here.has("switch.cfg.bak") && here.read("switch.cfg.bak") != original)
            return "half of a backup";
        return is_empty(room) ? "ended" : "private copies are left";
    }

    support::workspace_t here;
    std::vector<std::string> arguments = {"convert",     "--from",   "4.1(2)",    "--to",
                                          "4.1(3)K2(1)", "--backup", "switch.cfg"};
    int input = -1;       // standard input, or none
    bool ignores = false; // the signals

  private:
    // On a busy machine the program that holds the copies may end after the command.
    static bool is_empty(const fs::path &directory) {
        using namespace std::chrono_literals;
        for (int i = 0; i < 1000 && !fs::is_empty(directory); i++)
            std::this_thread::sleep_for(10ms);
        return fs::is_empty(directory);
    }

    fs::path room;
};

bool is_rename(const call_t &call) {
    return call.entry.nr == SYS_renameat || call.entry.nr == SYS_renameat2;
}

// The first rename makes the backup; a signal that comes directly before the second is too late.
TEST_F(interrupted_t, leaves_all_or_nothing_at_every_system_call) {
    const bool all = getenv("INFRACONVERT_EVERY_SIGNAL") != nullptr;
    const int calls = count_calls();
    std::map<std::string, int> outcomes;
    for (int at = 1, turn = 0; at <= calls; at += all ? 1 : 5, turn++) {
        for (int i = 0; i < (all ? 3 : 1); i++) {
            const int signal = signals[(turn + i) % 3];
            int reached = 0, renames = 0;
            const int status = run(
                [&](const call_t &call) {
                    renames += is_rename(call);
                    return ++reached == at;
                },
                signal);
            const std::string became = outcome(status, signal);
            outcomes[became]++;
            EXPECT_EQ(became, renames < 2 ? "ended" : "converted")
                << "signal " << signal << " at call " << at << " of " << calls;
        }
    }
    EXPECT_GT(outcomes["ended"], 10);
    EXPECT_GT(outcomes["converted"], 0);
    RecordProperty("system_calls", calls);
    RecordProperty("ended", outcomes["ended"]);
    RecordProperty("converted", outcomes["converted"]);
}

TEST_F(interrupted_t, ends_while_it_reads_standard_input) {
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    input = ends[0];
    arguments.back() = "-";
    std::erase(arguments, "--backup");
    const auto reads_input = [](const call_t &call) {
        return call.entry.nr == SYS_read && call.entry.args[0] == STDIN_FILENO;
    };
    for (const int signal : signals)
        EXPECT_EQ(outcome(run(reads_input, signal), signal), "ended") << signal;
    close(ends[0]);
    close(ends[1]);
}

TEST_F(interrupted_t, goes_on_where_signals_are_ignored) {
    ignores = true;
    const int calls = count_calls();
    for (int at = 1; at <= calls; at += calls / 12) {
        int reached = 0;
        const int signal = signals[at % 3];
        const int status = run([&](const call_t &) { return ++reached == at; }, signal);
        EXPECT_EQ(outcome(status, signal), "converted") << at;
    }
}

} // namespace

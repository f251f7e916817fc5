#include "base/child.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace infraconvert {

namespace {

volatile sig_atomic_t interrupting_signal = 0;

void remember(int signal) { interrupting_signal = signal; }

// The files of a child's standard streams.
class streams_t {
  public:
    streams_t(const std::string &output, const std::string &error) {
        posix_spawn_file_actions_init(&actions);
        add(STDIN_FILENO, "/dev/null", O_RDONLY);
        add(STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
        add(STDERR_FILENO, error.c_str(), O_WRONLY | O_CREAT | O_TRUNC);
    }
    streams_t(const streams_t &) = delete;
    streams_t &operator=(const streams_t &) = delete;
    ~streams_t() { posix_spawn_file_actions_destroy(&actions); }

    posix_spawn_file_actions_t actions;

  private:
    void add(int descriptor, const char *path, int flags) {
        posix_spawn_file_actions_addopen(&actions, descriptor, path, flags, 0600);
    }
};

// Waits for the child's end and returns its status.
int wait_for(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
        if (interrupting_signal != 0)
            kill(child, SIGKILL);
    }
    return status;
}

std::string fate(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "was killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    }
    const int exit_status = WEXITSTATUS(status);
    return exit_status == 0 ? "" : "exited with status " + std::to_string(exit_status);
}

} // namespace

void catch_interruptions() {
    struct sigaction action = {};
    action.sa_handler = remember; // without SA_RESTART, so that waiting ends
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
}

std::string run_child(const std::vector<std::string> &command, const std::string &output_file,
                      const std::string &error_file) {
    std::vector<char *> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string &argument : command)
        arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    const streams_t streams(output_file, error_file);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, arguments[0], &streams.actions, nullptr, arguments.data(), environ);
    if (error != 0)
        return std::string("could not be started: ") + strerror(error);
    const int status = wait_for(child);
    if (interrupting_signal != 0)
        throw interrupted{interrupting_signal};
    return fate(status);
}

} // namespace infraconvert

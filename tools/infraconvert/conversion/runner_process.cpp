#include "conversion/runner_process.h"

#include "base/errors.h"
#include "base/interruption.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <spawn.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

constexpr const char *program_name = "infraconvert-run";

// Where an interrupting signal finds infraconvert-run; 0 and -1 while there is none.
std::atomic<pid_t> process = 0;
std::atomic<int> control_descriptor = -1;

// The end of its socket tells infraconvert-run to end; what it removes then takes no time. Does
// only what a signal's handler may.
void end_runner() {
    constexpr int most_milliseconds = 2000;
    const pid_t program = process;
    if (program == 0)
        return;
    shutdown(control_descriptor, SHUT_RDWR);
    for (int i = 0; i < most_milliseconds && waitpid(program, nullptr, WNOHANG) == 0; i++)
        poll(nullptr, 0, 1);
}

// Beside this program in a build, in ../libexec/infraconvert once installed.
fs::path find_program() {
    const fs::path here = fs::read_symlink("/proc/self/exe").parent_path();
    for (const fs::path &directory : {here, here / "../libexec/infraconvert"}) {
        if (access((directory / program_name).c_str(), X_OK) == 0)
            return directory / program_name;
    }
    throw run_error_t(std::string(program_name) + " stands neither in " + here.string() +
                      " nor in its ../libexec/infraconvert");
}

run_error_t trouble(const char *what, int error) {
    return run_error_t(std::string(program_name) + ' ' + what + ": " + strerror(error));
}

struct pair_t {
    socket_t ours, theirs;
};

pair_t make_pair() {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        throw trouble("cannot be talked to", errno);
    return {socket_t(ends[0]), socket_t(ends[1])};
}

// The program keeps standard error until it runs, to tell of a library that cannot be loaded.
pid_t spawn(const fs::path &program, int control) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, control, runner::control_socket);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    std::string name = program;
    char *const arguments[] = {name.data(), nullptr};
    pid_t child = 0;
    const int error = posix_spawn(&child, name.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw trouble("could not be started", error);
    return child;
}

} // namespace

socket_t::~socket_t() {
    if (number >= 0)
        close(number);
}

std::string fate(int status) {
    if (WIFSIGNALED(status)) {
        const int signal = WTERMSIG(status);
        return "was killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    }
    return "exited with status " + std::to_string(WEXITSTATUS(status));
}

runner_process_t &runner_process_t::shared() {
    static runner_process_t only;
    return only;
}

runner_process_t::~runner_process_t() { end_runner(); }

void runner_process_t::start() {
    pair_t pair = make_pair();
    const pid_t child = spawn(find_program(), pair.theirs.descriptor());
    control = std::move(pair.ours);
    control_descriptor = control.descriptor();
    process = child;
    before_ending(end_runner);
}

// Its sockets say so before the process can be waited for.
std::string runner_process_t::note_end(pid_t program) {
    const std::lock_guard guard(lock);
    if (process == program) {
        process = 0;
        kill(program, SIGKILL);
        int status = 0;
        waitpid(program, &status, 0);
        ends[program] = fate(status);
    }
    return ends[program];
}

void runner_process_t::send_request(const runner::request_t &request, int answers) const {
    iovec part = {const_cast<runner::request_t *>(&request), sizeof request};
    alignas(cmsghdr) char space[CMSG_SPACE(sizeof answers)] = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = space;
    header.msg_controllen = sizeof space;
    cmsghdr *extra = CMSG_FIRSTHDR(&header);
    extra->cmsg_level = SOL_SOCKET;
    extra->cmsg_type = SCM_RIGHTS;
    extra->cmsg_len = CMSG_LEN(sizeof answers);
    memcpy(CMSG_DATA(extra), &answers, sizeof answers);
    ssize_t sent;
    do
        sent = sendmsg(control.descriptor(), &header, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
}

answers_t runner_process_t::request(const runner::request_t &request,
                                    std::chrono::seconds patience) {
    pair_t pair = make_pair();
    const timeval time = {patience.count(), 0};
    setsockopt(pair.ours.descriptor(), SOL_SOCKET, SO_RCVTIMEO, &time, sizeof time);
    const uninterrupted_t starting; // or the end would not know whom to wait for
    const std::lock_guard guard(lock);
    if (process == 0)
        start();
    // A request that nobody takes is one without answers.
    send_request(request, pair.theirs.descriptor());
    return {std::move(pair.ours), process};
}

} // namespace infraconvert

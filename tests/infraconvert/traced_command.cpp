#include "traced_command.h"

#include "workspace.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

constexpr int could_not_start = 126;

// The process stands at a call, at its start, or at a signal of its own, which it gets. Lets it go
// on to where it stands next, or ends.
void go_on(pid_t process, int &status) {
    const int stop = WIFSTOPPED(status) ? WSTOPSIG(status) : SIGTRAP;
    const bool is_signal = stop != SIGTRAP && stop != (SIGTRAP | 0x80);
    ptrace(PTRACE_SYSCALL, process, 0, is_signal ? stop : 0);
    waitpid(process, &status, 0);
}

} // namespace

pid_t traced_command_t::start(int &status) const {
    const pid_t command = fork();
    if (command == 0)
        become_the_command();
    waitpid(command, &status, 0); // in front of its first instruction
    ptrace(PTRACE_SETOPTIONS, command, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    return command;
}

void traced_command_t::become_the_command() const {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::signal(signal, ignores ? SIG_IGN : SIG_DFL);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(input < 0 ? nothing : input, STDIN_FILENO);
    dup2(output < 0 ? nothing : output, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    setenv("TMPDIR", room.c_str(), 1);
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1); // which is refused to a process that is traced
    std::string command = command_path();
    std::vector<char *> words = {command.data()};
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    if (chdir(directory.c_str()) == 0 && ptrace(PTRACE_TRACEME, 0, 0, 0) == 0)
        execv(words[0], words.data());
    _exit(could_not_start);
}

int traced_command_t::run(const std::function<bool(const call_t &)> &chosen, int signal) const {
    int status = 0;
    const pid_t command = start(status);
    while (WIFSTOPPED(status)) {
        call_t call = {};
        ptrace(PTRACE_GET_SYSCALL_INFO, command, sizeof call, &call);
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY && chosen(call)) {
            kill(command, signal);
            ptrace(PTRACE_DETACH, command, 0, 0);
            waitpid(command, &status, 0);
        } else {
            go_on(command, status);
        }
    }
    return status;
}

#ifdef __x86_64__

const bool traced_command_t::can_judge = true;

namespace {

std::string name_of(pid_t process, uint64_t descriptor) {
    std::error_code ignored;
    return std::filesystem::read_symlink("/proc/" + std::to_string(process) + "/fd/" +
                                             std::to_string(static_cast<int>(descriptor)),
                                         ignored);
}

// Lets a call happen as is its fate; the process stops behind it.
void carry_out(pid_t process, const traced_command_t::fate_t &fate, int &status) {
    user_regs_struct asked;
    ptrace(PTRACE_GETREGS, process, nullptr, &asked);
    user_regs_struct registers = asked;
    if (fate.error != 0)
        registers.orig_rax = ~0ull; // no such call: nothing happens
    registers.rdx = std::min<unsigned long long>(asked.rdx, fate.most);
    ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    ptrace(PTRACE_SYSCALL, process, 0, 0);
    waitpid(process, &status, 0);
    ptrace(PTRACE_GETREGS, process, nullptr, &registers);
    registers.rdx = asked.rdx; // the caller counts on finding its arguments as they were
    if (fate.error != 0)
        registers.rax = static_cast<unsigned long long>(-static_cast<long>(fate.error));
    ptrace(PTRACE_SETREGS, process, nullptr, &registers);
}

} // namespace

int traced_command_t::run(
    const std::function<fate_t(const call_t &, const std::string &file)> &judge) const {
    int status = 0;
    const pid_t command = start(status);
    while (WIFSTOPPED(status)) {
        call_t call = {};
        ptrace(PTRACE_GET_SYSCALL_INFO, command, sizeof call, &call);
        fate_t fate;
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY)
            fate = judge(call, name_of(command, call.entry.args[0]));
        if (fate.error != 0 || fate.most != fate_t{}.most || fate.is_last)
            carry_out(command, fate, status);
        if (fate.is_last)
            kill(command, SIGKILL);
        go_on(command, status);
    }
    return status;
}

#else

const bool traced_command_t::can_judge = false;

int traced_command_t::run(
    const std::function<fate_t(const call_t &, const std::string &)> &) const {
    return -1;
}

#endif

} // namespace support

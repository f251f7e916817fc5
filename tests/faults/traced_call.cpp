#include "traced_call.h"

#include "support/converter_process.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace faults {

namespace {

using registers_t = user_regs_struct;

// Where a call names its file: as an open descriptor, or as a path, in which argument.
enum class names_file_t { by_descriptor, by_path, by_path_at };

struct kind_t {
    long number;
    const char *name;
    names_file_t how;
};

constexpr kind_t kinds[] = {
    {SYS_open, "open", names_file_t::by_path},
    {SYS_openat, "open", names_file_t::by_path_at},
    {SYS_stat, "stat", names_file_t::by_path},
    {SYS_fstat, "stat", names_file_t::by_descriptor},
    {SYS_newfstatat, "stat", names_file_t::by_path_at},
    {SYS_readlink, "readlink", names_file_t::by_path},
    {SYS_readlinkat, "readlink", names_file_t::by_path_at},
    {SYS_read, "read", names_file_t::by_descriptor},
    {SYS_write, "write", names_file_t::by_descriptor},
    {SYS_writev, "write", names_file_t::by_descriptor},
    {SYS_fsync, "fsync", names_file_t::by_descriptor},
    {SYS_close, "close", names_file_t::by_descriptor},
    {SYS_rename, "rename", names_file_t::by_path},
    {SYS_renameat, "rename", names_file_t::by_path_at},
    {SYS_renameat2, "rename", names_file_t::by_path_at},
    {SYS_fchown, "chown", names_file_t::by_descriptor},
    {SYS_fchmod, "chmod", names_file_t::by_descriptor},
    {SYS_flistxattr, "xattr", names_file_t::by_descriptor},
    {SYS_fgetxattr, "xattr", names_file_t::by_descriptor},
    {SYS_fsetxattr, "xattr", names_file_t::by_descriptor},
    {SYS_fremovexattr, "xattr", names_file_t::by_descriptor},
    {SYS_fallocate, "allocate", names_file_t::by_descriptor},
    {SYS_ftruncate, "truncate", names_file_t::by_descriptor},
    {SYS_flock, "lock", names_file_t::by_descriptor},
    {SYS_ioctl, "flags", names_file_t::by_descriptor},
    {SYS_fcntl, "duplicate", names_file_t::by_descriptor},
    {SYS_unlink, "unlink", names_file_t::by_path},
    {SYS_unlinkat, "unlink", names_file_t::by_path_at},
};

std::string name_of_descriptor(pid_t process, unsigned long long descriptor) {
    const std::string link =
        "/proc/" + std::to_string(process) + "/fd/" + std::to_string(static_cast<int>(descriptor));
    std::error_code error;
    return std::filesystem::read_symlink(link, error).filename();
}

std::string path_in_memory(pid_t process, unsigned long long address) {
    std::ifstream memory("/proc/" + std::to_string(process) + "/mem", std::ios::binary);
    memory.seekg(static_cast<std::streamoff>(address));
    std::string path;
    for (char c; memory.get(c) && c;)
        path += c;
    return path;
}

system_call_t describe(pid_t process, const registers_t &registers) {
    for (const kind_t &kind : kinds) {
        if (static_cast<long>(registers.orig_rax) != kind.number)
            continue;
        std::string path;
        if (kind.how == names_file_t::by_path)
            path = path_in_memory(process, registers.rdi);
        if (kind.how == names_file_t::by_path_at)
            path = path_in_memory(process, registers.rsi);
        const bool by_descriptor = kind.how == names_file_t::by_descriptor ||
                                   (kind.how == names_file_t::by_path_at && path.empty());
        const bool writes = kind.number == SYS_openat && (registers.rdx & O_ACCMODE) != O_RDONLY;
        return {kind.name,
                by_descriptor ? name_of_descriptor(process, registers.rdi)
                              : std::filesystem::path(path).filename().string(),
                writes};
    }
    return {};
}

// Runs the stopped process up to its next stop; false when there was none any more.
bool run_to_stop(pid_t process, int &stop) {
    return ptrace(PTRACE_SYSCALL, process, nullptr, nullptr) == 0 &&
           waitpid(process, &stop, 0) == process && WIFSTOPPED(stop);
}

constexpr int at_system_call = SIGTRAP | 0x80;

// Lets the call at which the process stopped happen, as the verdict says. Returns false when the
// process ended.
bool carry_out(pid_t process, const registers_t &asked, const verdict_t &verdict, int &stop) {
    const bool fails = verdict.what == verdict_t::fail;
    registers_t registers = asked;
    if (fails && static_cast<long>(asked.orig_rax) != SYS_close)
        registers.orig_rax = ~0ull; // no such call: nothing happens
    if (verdict.what == verdict_t::half)
        registers.rdx = (asked.rdx + 1) / 2;
    ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    if (!run_to_stop(process, stop))
        return false;
    ptrace(PTRACE_GETREGS, process, nullptr, &registers);
    registers.rdx = asked.rdx; // the caller counts on finding its arguments as they were
    if (fails)
        registers.rax = static_cast<unsigned long long>(-static_cast<long>(verdict.error));
    ptrace(PTRACE_SETREGS, process, nullptr, &registers);
    return true;
}

} // namespace

traced_t traced(const std::function<int()> &call,
                const std::function<verdict_t(const system_call_t &)> &judge) {
    const pid_t process = fork();
    if (process == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        const int nothing = open("/dev/null", O_WRONLY);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        raise(SIGSTOP);
        const int status = call();
        raise(SIGSTOP);
        support::leave_process(status & 0xFF);
    }
    traced_t result;
    int stop = 0;
    waitpid(process, &stop, 0);
    ptrace(PTRACE_SETOPTIONS, process, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    while (run_to_stop(process, stop)) {
        if (WSTOPSIG(stop) == SIGSTOP) { // the call came back
            ptrace(PTRACE_DETACH, process, nullptr, nullptr);
            waitpid(process, &stop, 0);
            break;
        }
        if (WSTOPSIG(stop) != at_system_call) { // a signal of its own: let it die of it
            kill(process, SIGKILL);
            continue;
        }
        registers_t registers;
        ptrace(PTRACE_GETREGS, process, nullptr, &registers);
        const system_call_t next = describe(process, registers);
        const verdict_t verdict = next.kind.empty() ? verdict_t{} : judge(next);
        if (verdict.what == verdict_t::kill) {
            result.killed = true;
            kill(process, SIGKILL);
            waitpid(process, &stop, 0);
            return result;
        }
        if (!carry_out(process, registers, verdict, stop))
            break;
    }
    result.crashed = !WIFEXITED(stop);
    result.status = static_cast<signed char>(WIFEXITED(stop) ? WEXITSTATUS(stop) : -1);
    return result;
}

} // namespace faults

#include "runner/converter_child.h"

#include "include/libinfraconvertascii.h"
#include "runner/log_redirection.h"
#include "runner/skipped_sync.h"

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace runner {

namespace {

constexpr const char *configuration = "ascii/system.cfg"; // in the directory of the call
constexpr const char *package = "infraconvert";

// A converter that takes no end of memory is refused more, before the machine runs out of it: the
// conversions need at most some two hundred bytes for each of a small configuration, and ten of a
// large one.
constexpr uint64_t memory_for_any = 1 << 30, memory_for_a_byte = 64;

struct job_t {
    std::string from, to;
    std::vector<uint32_t> services;
    std::string text;
};

// Takes the job apart from its front.
class reader_t {
  public:
    explicit reader_t(std::string_view job) : rest(job) {}

    std::string_view take(size_t size) {
        if (size > rest.size())
            throw std::runtime_error("an incomplete job");
        const std::string_view taken = rest.substr(0, size);
        rest.remove_prefix(size);
        return taken;
    }
    template<class Record> Record take_record() {
        Record record;
        memcpy(&record, take(sizeof record).data(), sizeof record);
        return record;
    }
    std::string_view rest;
};

std::string receive_job(const call_t &call) {
    std::string job;
    job.reserve(call.request.job_size);
    while (job.size() < call.request.job_size) {
        const auto piece = receive(call.socket);
        if (!piece)
            throw std::runtime_error("an incomplete job");
        job += piece->bytes;
    }
    return job;
}

job_t read_job(const std::string &bytes) {
    reader_t reader(bytes);
    const auto head = reader.take_record<job_head_t>();
    job_t job;
    job.from = reader.take(head.from_size);
    job.to = reader.take(head.to_size);
    for (uint32_t i = 0; i < head.services; i++)
        job.services.push_back(reader.take_record<uint32_t>());
    job.text = reader.rest;
    return job;
}

using file_t = std::unique_ptr<FILE, int (*)(FILE *)>;

std::runtime_error trouble_with(const std::string &what) {
    return std::runtime_error("cannot " + what +
                              " a private copy of the configuration: " + strerror(errno));
}

void write_configuration(const std::string &text) {
    file_t file(fopen(configuration, "w"), fclose);
    if (!file || fwrite(text.data(), 1, text.size(), file.get()) != text.size() ||
        fclose(file.release()) != 0)
        throw trouble_with("write");
}

bool send_configuration(int socket) {
    const file_t file(fopen(configuration, "r"), fclose);
    if (!file)
        throw trouble_with("read");
    char piece[piece_size];
    for (size_t size; (size = fread(piece, 1, sizeof piece, file.get())) > 0;) {
        if (!send_in_pieces(socket, {piece, size}))
            return false;
    }
    return true;
}

// What tells that a file was saved: a save makes another file of it, or, in place, a later one.
struct version_t {
    ino_t file;
    timespec modified;

    bool operator==(const version_t &other) const {
        return file == other.file && modified.tv_sec == other.modified.tv_sec &&
               modified.tv_nsec == other.modified.tv_nsec;
    }
};

version_t version_of_configuration() {
    struct stat status;
    if (stat(configuration, &status) != 0)
        throw trouble_with("read");
    return {status.st_ino, status.st_mtim};
}

void switch_logs(bool on) {
    qosmgrcnv_debug = fcportsec_debug = npiv_debug = fwmcnv_debug = satcnv_debug = on;
}

void limit_memory(uint64_t text_size) {
#ifndef __SANITIZE_ADDRESS__ // whose shadow alone is larger
    const rlim_t most = memory_for_any + memory_for_a_byte * text_size;
    const rlimit limit = {most, most};
    setrlimit(RLIMIT_AS, &limit);
#else
    (void)text_size;
#endif
}

// Has one service convert the file. Returns whether the next one may.
bool run_service(const call_t &call, const job_t &job, uint32_t service) {
    const infraconvertascii_args_t args = {.path = ".", // clear of the library's limit on paths
                                           .pkg_name = package,
                                           .to_pkg_version = job.to.c_str(),
                                           .from_pkg_version = job.from.c_str()};
    const version_t before = version_of_configuration();
    convertascii_ret_value_t result = {service, 0};
    libinfraconvertascii_init(0);
    infraconvertascii_startup(service, &result, &args);
    fflush(nullptr); // the logs are complete when the step is told
    const step_ended_t ended = {result.syserr, version_of_configuration() == before ? 0u : 1u};
    return (!ended.changed || send_configuration(call.socket)) &&
           send_record(call.socket, kind_t::step_ended, ended) && ended.status == 0;
}

void prepare(const call_t &call, const job_t &job) {
    if (chdir(call.directory.c_str()) != 0)
        throw trouble_with("write");
    write_configuration(job.text);
    redirect_logs_to(call.request.wants_logs ? call.directory / "logs" : "");
    switch_logs(call.request.wants_logs != 0);
    skip_syncs();
    limit_memory(job.text.size());
}

} // namespace

int run_job(const call_t &call) try {
    job_t job = read_job(receive_job(call));
    for (const uint32_t service : job.services) {
        if (!is_uuid_in_convertascii_startup_table(service))
            throw std::runtime_error("no converter for this service");
    }
    prepare(call, job);
    job.text = {};
    if (call.request.wants_logs)
        send(call.socket, kind_t::place, (call.directory / "logs").native());
    for (const uint32_t service : job.services) {
        if (!run_service(call, job, service))
            break;
    }
    return 0;
} catch (const std::exception &e) {
    send(call.socket, kind_t::refused, e.what());
    return 0;
}

} // namespace runner

// Stands in for the library: converters that do what the configuration tells them. Of a line
//
//     SERVICE WHAT [later]
//
// the service of this identifier does WHAT, with "later" only where it is not the first service of
// its process. Every service that comes back appends its identifier. A second run of one service by
// one process ends the process.

#include "include/libinfraconvertascii.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

constexpr const char *configuration = "ascii/system.cfg";

std::set<uuid_t> ran;

syserr_t fail() {
    FILE *log = fopen("/mnt/pss/npiv.log", "a");
    fputs("npiv_x(): failed to write\n", log);
    fclose(log);
    return ~0u;
}

syserr_t take_all_memory() {
    constexpr size_t much = 1 << 26;
    for (char *memory; (memory = static_cast<char *>(malloc(much)));)
        memory[0] = memory[much - 1] = 1;
    return fail();
}

syserr_t hang() {
    for (;;)
        pause();
}

syserr_t crash() {
    signal(SIGSEGV, SIG_DFL); // the sanitizers have a handler
    raise(SIGSEGV);
    return 0;
}

const struct {
    const char *name;
    syserr_t (*run)();
} deeds[] = {
    {"fail", fail}, {"take all memory", take_all_memory}, {"hang", hang}, {"crash", crash}};

syserr_t obey(const std::string &line, const std::string &service) {
    if (!line.starts_with(service + ' ') || (line.ends_with(" later") && ran.size() == 1))
        return 0;
    for (const auto &deed : deeds) {
        if (line.find(deed.name) != line.npos)
            return deed.run();
    }
    return 0;
}

syserr_t convert(uuid_t uuid) {
    const std::string service = std::to_string(uuid);
    std::ifstream file(configuration);
    std::stringstream text;
    text << file.rdbuf();
    for (std::string line; std::getline(text, line);) {
        if (const syserr_t status = obey(line, service); status != 0)
            return status;
    }
    std::ofstream(configuration, std::ios::app) << service << '\n';
    return 0;
}

} // namespace

boolean qosmgrcnv_debug, fcportsec_debug, npiv_debug, fwmcnv_debug, satcnv_debug;

void libinfraconvertascii_init(mts_q_handle_t) {}
boolean is_uuid_in_convertascii_startup_table(uuid_t) { return 1; }
syserr_t infraconvertascii_startup(uuid_t uuid, convertascii_ret_value_t *result,
                                   const infraconvertascii_args_t *) {
    if (!ran.insert(uuid).second)
        abort();
    if (const syserr_t status = convert(uuid); status != 0)
        *result = {uuid, status};
    return 0;
}

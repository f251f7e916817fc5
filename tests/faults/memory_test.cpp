// Every allocation of a conversion fails in turn: the file stays as it was, or is converted where
// the library could do without, and the next conversion in the same process is a whole one.

#include "support/services.h"

#include <climits>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

// Which allocation fails, counted from the moment that it is set; all later ones as well when it
// lasts.
struct failing_allocation_t {
    int countdown = INT_MAX;
    bool lasts = false;
    int failed = 0;

    bool fails() {
        if (countdown == INT_MAX || (countdown > 0 && --countdown > 0))
            return false;
        failed++;
        if (!lasts)
            countdown = INT_MAX;
        return true;
    }
};
failing_allocation_t failing;

} // namespace

// The program's definitions take the place of the C library's for the shared library too.
extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *memory, size_t size);

void *malloc(size_t size) { return failing.fails() ? nullptr : __libc_malloc(size); }
void *calloc(size_t count, size_t size) {
    return failing.fails() ? nullptr : __libc_calloc(count, size);
}
void *realloc(void *memory, size_t size) {
    return failing.fails() ? nullptr : __libc_realloc(memory, size);
}
}

namespace {

struct example_t {
    const char *service, *from, *to, *name; // of a golden conversion
    boolean debug_switch = 1;
    std::string folder() const {
        return std::string(GOLDEN_DIRECTORY "/") + service + '/' + from + "__" + to + '/' + name;
    }
};

const example_t examples[] = {
    {"qos", "4.0(1)", "4.1(3)", "all-special-classes"},
    {"qos", "5.0(2)", "4.0(1)", "trap-empty-maps"},
    {"qos", "5.0(2)", "4.0(1)", "trap-empty-maps", 0},
    {"qos", "4.1(3)", "4.2(1)", "mtu-limits"},
    {"qos", "5.0(3)U2(1)", "5.0(3)U1(1)", "trap-control-plane-lines"},
    {"fcportsec", "4.1(2)", "4.2(1)", "storage-switch"},
    {"npiv", "4.1(2)", "4.1(3)K2(1)", "data-centre-switch"},
    {"fwm", "4.2(1)", "4.1(3)", "static-addresses"},
    {"assoc", "4.1(3)", "5.0(2)", "trap-odd-vlan-lists"},
    {"satmgr", "4.2(1)", "5.0(3)", "trap-odd-fabric-ports"},
};

// What came of one allocation that failed.
enum class result_t { file_stayed, file_converted, not_reached, broken };

class conversion_t {
  public:
    explicit conversion_t(const example_t &e)
        : example(e), service(support::service_named(e.service)),
          before(support::read_file(e.folder() + "/in.cfg")),
          after(support::read_file(e.folder() + "/out.cfg")) {
        if (service.debug_switch)
            *service.debug_switch = example.debug_switch;
    }

    result_t with_failing_allocation(int index, bool lasts) const {
        support::write_file(file, before);
        failing = {index, lasts, 0};
        const syserr_t status = run();
        failing.countdown = INT_MAX;
        const bool file_as_told = support::read_file(file) == (status == 0 ? after : before);
        const std::filesystem::directory_iterator entries(place.path() + "/ascii");
        if (!file_as_told || std::distance(begin(entries), end(entries)) != 1 || !works_again())
            return result_t::broken;
        return failing.failed == 0 ? result_t::not_reached
               : status == 0       ? result_t::file_converted
                                   : result_t::file_stayed;
    }

  private:
    syserr_t run() const {
        return service.start(place.path().c_str(), "package", example.to, example.from);
    }
    bool works_again() const {
        support::write_file(file, before);
        return run() == 0 && support::read_file(file) == after;
    }

    const example_t &example;
    const support::service_t &service;
    const std::string before, after;
    const support::temporary_directory_t place;
    const std::string file = place.path() + "/ascii/system.cfg";
};

constexpr int all_fine = 0, found_broken = 1;

// Tells on standard error which allocation fails, and at the end how many did.
int fail_each_allocation(const example_t &example, bool lasts) {
    const conversion_t conversion(example);
    int stayed = 0, converted = 0;
    for (int index = 1;; index++) {
        fprintf(stderr, "%d\n", index);
        switch (conversion.with_failing_allocation(index, lasts)) {
        case result_t::broken:
            return found_broken;
        case result_t::not_reached:
            fprintf(stderr, "%d %d\n", stayed, converted);
            return all_fine;
        case result_t::file_stayed:
            stayed++;
            break;
        case result_t::file_converted:
            converted++;
            break;
        }
    }
}

} // namespace

TEST(memory, each_allocation_fails) {
    int all_stayed = 0, all_converted = 0;
    for (const example_t &example : examples) {
        for (const bool lasts : {false, true}) {
            const auto outcome =
                support::run_in_process([&] { return fail_each_allocation(example, lasts); });
            const std::string &told = outcome.errors;
            const size_t last = told.empty() ? 0 : told.rfind('\n', told.size() - 2) + 1;
            ASSERT_TRUE(!outcome.crashed && outcome.status == all_fine)
                << example.folder() << ", allocation " << told.substr(last) << "lasts " << lasts;
            int stayed = 0, converted = 0;
            sscanf(told.c_str() + last, "%d %d", &stayed, &converted);
            EXPECT_GT(stayed, 5) << example.folder();
            all_stayed += stayed;
            all_converted += converted;
        }
    }
    printf("allocations failed: the file stayed %d times, was converted all the same %d times\n",
           all_stayed, all_converted);
}

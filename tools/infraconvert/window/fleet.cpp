#include "window/fleet.h"

#include "audit/audit.h"
#include "audit/fixes.h"
#include "audit/masked_findings.h"
#include "base/errors.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>

namespace infraconvert {

namespace {

namespace fs = std::filesystem;

// Converts the result back, and judges the whole way.
mending::mended_t look_back(const fleet_t &fleet, const conversion_request_t &there,
                            const converted_t &conversion, audited_t &audited) {
    const auto &[from, to] = there.releases;
    conversion_request_t request = there;
    request.text = conversion.result;
    request.releases = {to, from};
    const converted_t back = run_conversion(request);
    if (back.failed() && !there.keep_going) {
        audited.failed = true;
        audited.verdict = "not reversible: the way back fails";
        return {};
    }
    way_back_t way = judge_way_back(*conversion.original, *back.result, {from, to, from});
    audited.verdict = way.verdict();
    audited.findings = std::move(way.findings);
    if (fleet.mask) {
        converted_t whole = conversion;
        whole.result = back.result;
        mask_findings(audited.findings, whole);
    }
    return std::move(way.mended);
}

// A result that was not made here, or the file as it is.
void judge_what_is_there(const fleet_t &fleet, const shared_text_t &text, audited_t &audited) {
    const auto &[from, to] = fleet.request.releases;
    const shared_text_t result = fleet.form_alone ? text : fleet.result;
    const converted_t both = {.releases = fleet.request.releases,
                              .original = text,
                              .result = result,
                              .steps = {},
                              .script = difference(split_lines(*text), split_lines(*result)),
                              .logs = {},
                              .masked = false};
    audited.form_alone = fleet.form_alone;
    audited.changed = both.changes();
    audited.findings =
        fleet.form_alone ? judge_form_of(*text, from) : judge(*text, *result, {from, to});
    if (fleet.mask)
        mask_findings(audited.findings, both);
    if (fleet.describe)
        audited.details = fleet.describe(audited, both);
}

void look_at(const fleet_t &fleet, audited_t &audited) try {
    conversion_request_t request = fleet.request;
    request.text = read_configuration(audited.file);
    if (fleet.result || fleet.form_alone)
        return judge_what_is_there(fleet, request.text, audited);
    const converted_t conversion = run_conversion(request);
    audited.failed = conversion.failed();
    audited.changed = conversion.changes();
    for (const step_t &step : conversion.steps) {
        if (step.changes() || step.failure)
            audited.services.emplace_back(step.service->name);
    }
    mending::mended_t mended;
    if (fleet.rollback && !audited.failed) {
        mended = look_back(fleet, request, conversion, audited);
    } else {
        audited.findings = audit(conversion, true);
        mended = mend_findings(audited.findings, conversion, request);
        if (fleet.mask)
            mask_findings(audited.findings, conversion);
    }
    if (fleet.keep_fixes && !mended.fixes.empty())
        fleet.keep_fixes(audited, mended);
    if (fleet.describe)
        audited.details = fleet.describe(audited, conversion);
} catch (const command_error_t &e) {
    audited.problem = e.what();
    audited.problem_status = e.exit_status;
} catch (const std::exception &e) {
    audited.problem = e.what();
    audited.problem_status = exit_trouble;
}

// The threads that share the work. What ends one of them early ends all, and is thrown again.
class crew_t {
  public:
    crew_t(const fleet_t &f, std::vector<audited_t> &r) : fleet(f), results(r) {}

    void run() {
        {
            std::vector<std::jthread> threads;
            try {
                while (threads.size() + 1 < std::min(fleet.jobs, results.size()))
                    threads.emplace_back([this] { work(); });
            } catch (const std::system_error &) { // no more of them: the others do it all
            }
            work();
        }
        if (trouble)
            std::rethrow_exception(trouble);
    }

  private:
    void work() try {
        for (size_t i; (i = next++) < results.size();) {
            look_at(fleet, results[i]);
            const std::lock_guard guard(lock);
            done++;
            if (fleet.progress)
                fleet.progress(done);
        }
    } catch (...) {
        const std::lock_guard guard(lock);
        trouble = std::current_exception();
        next = results.size();
    }

    const fleet_t &fleet;
    std::vector<audited_t> &results;
    std::atomic<size_t> next = 0;
    std::mutex lock;
    size_t done = 0;
    std::exception_ptr trouble;
};

bool is_hidden(const fs::path &path) { return path.filename().string().starts_with("."); }

// All but devices, pipes and sockets: with the last three the reading tells what is wrong.
constexpr fs::file_type looked_at[] = {fs::file_type::regular, fs::file_type::not_found,
                                       fs::file_type::unknown, fs::file_type::none};

// What cannot be looked into or behind is taken for a configuration: reading it tells why not.
// Links to folders are not followed, so that no file comes twice.
void append_files_below(const fs::path &folder, std::vector<std::string> &files) {
    std::error_code error;
    std::vector<fs::path> entries;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != end(entry);
         entry.increment(error))
        entries.push_back(entry->path());
    if (error)
        files.push_back(folder);
    for (const fs::path &entry : entries) {
        if (is_hidden(entry))
            continue;
        const bool is_folder = fs::is_directory(fs::symlink_status(entry, error));
        const fs::file_type type = fs::status(entry, error).type();
        if (is_folder)
            append_files_below(entry, files);
        else if (std::count(std::begin(looked_at), std::end(looked_at), type) > 0)
            files.push_back(entry);
    }
}

} // namespace

const char *audited_t::state() const {
    if (!problem.empty())
        return "unusable";
    if (failed)
        return "failed";
    if (form_alone)
        return "checked";
    return changed ? "changed" : "unchanged";
}

int audited_t::exit_status() const {
    if (!problem.empty())
        return problem_status;
    if (failed)
        return exit_failed;
    return count_findings(findings).errors > 0 ? exit_findings : exit_done;
}

std::vector<std::string> configuration_files(const std::vector<std::string> &paths) {
    std::vector<std::string> files;
    for (const std::string &path : paths) {
        std::error_code ignored;
        const bool all_below = fs::is_directory(path, ignored) &&
                               !fs::exists(fs::path(path) / configuration_in_directory, ignored);
        if (!all_below) {
            files.push_back(configuration_file(path));
            continue;
        }
        const auto first = static_cast<std::ptrdiff_t>(files.size());
        append_files_below(path, files);
        std::sort(files.begin() + first, files.end());
    }
    return files;
}

std::vector<audited_t> audit_all(const fleet_t &fleet) {
    std::vector<audited_t> results;
    for (const std::string &file : fleet.files) {
        audited_t audited;
        audited.file = file;
        results.push_back(audited);
    }
    crew_t(fleet, results).run();
    return results;
}

} // namespace infraconvert

// What is there today as exceptions, so that only what is new stops anybody from now on. What no
// exception helps, a configuration that cannot be read or converted, is told beside.

#include "base/quoting.h"
#include "reports/formats.h"
#include "window/exceptions.h"

#include <algorithm>
#include <set>

namespace infraconvert {

namespace {

// Of a conversion that fails: no exception makes it one that does not.
constexpr finding_code_t failure = "IC090";

std::string comment(const audited_t &audited, const std::string &cause) {
    std::string line = visible(cause);
    std::replace(line.begin(), line.end(), '\n', ' ');
    return "# no exception helps: " + quoted_name(audited.file) + ": " + line + '\n';
}

std::string cause_of(const finding_t &finding) {
    return std::string(finding.kind->code) + ' ' +
           (finding.detail.empty() ? finding.kind->title : finding.detail);
}

class accept_writer_t : public writer_t {
  public:
    explicit accept_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override {
        keeps_going = header.keep_going;
        write("# Agreed on " + header.date.substr(0, header.date.find('T')) + ", " +
              route_text(header.route) +
              ".\n# Add to each line why it is all right, and until when (YYYY-MM-DD).\n"
              "# code | configuration | stanza | reason | until\n");
    }
    void add(const audited_t &audited) override {
        if (!audited.problem.empty())
            return write(comment(audited, without_name(audited.file, audited.problem)));
        const bool fails = audited.state == state_t::failed && !keeps_going;
        std::vector<finding_t> agreeable;
        std::set<std::string> comments; // each once
        for (const finding_t &finding : audited.findings) {
            if (!fails && finding.kind != &failure.kind())
                agreeable.push_back(finding);
            else if (is_open_error(finding))
                comments.insert(comment(audited, cause_of(finding)));
        }
        for (const std::string &line : comments)
            write(line);
        write(exceptions_for(audited.file, agreeable));
    }
    void end(const totals_t &) override {}

  private:
    output_t write;
    bool keeps_going = false; // past a failure, to what it loses
};

} // namespace

std::unique_ptr<writer_t> accept_writer(output_t out) {
    return std::make_unique<accept_writer_t>(std::move(out));
}

} // namespace infraconvert

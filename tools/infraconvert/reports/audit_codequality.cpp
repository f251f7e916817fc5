// The report that pipelines show beside the lines of a merge request: an array of issues.

#include "reports/fingerprints.h"
#include "reports/formats.h"
#include "reports/json_stream.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

const char *severity_of(severity_t severity) {
    switch (severity) {
    case severity_t::error:
        return "critical";
    case severity_t::warning:
        return "minor";
    case severity_t::note:
        break;
    }
    return "info";
}

// As in the repository, whose files have no "./" in front.
std::string path_of(std::string_view file) {
    while (file.starts_with("./"))
        file.remove_prefix(2);
    return std::string(file);
}

struct issue_t {
    std::string check, severity, text, fingerprint;
    size_t line;
};

json issue_json(const std::string &file, const issue_t &issue) {
    return {{"description", issue.text},
            {"check_name", issue.check},
            {"fingerprint", issue.fingerprint},
            {"severity", issue.severity},
            {"location", {{"path", path_of(file)}, {"lines", {{"begin", issue.line}}}}}};
}

issue_t issue_of(const finding_t &finding, const std::string &fingerprint) {
    return {.check = finding.kind->code,
            .severity = severity_of(finding.kind->severity),
            .text = finding.detail.empty()
                        ? finding.kind->title
                        : std::string(finding.kind->title) + ": " + finding.detail,
            .fingerprint = fingerprint,
            .line = finding.before.empty() ? 1 : finding.before[0].number};
}

class codequality_writer_t : public writer_t {
  public:
    explicit codequality_writer_t(output_t out) : stream(std::move(out)) {}

    void begin(const header_t &) override { stream.open('['); }

    void add(const audited_t &audited) override {
        fingerprints_t fingerprints(audited.file);
        if (!audited.problem.empty())
            issue(audited.file,
                  {"unusable", "blocker", audited.problem, fingerprints.next("unusable"), 1});
        for (const finding_t &finding : audited.findings) {
            const std::string fingerprint = fingerprints.of(finding);
            if (!finding.accepted)
                issue(audited.file, issue_of(finding, fingerprint));
        }
    }

    void end(const totals_t &) override { stream.close(); }

  private:
    void issue(const std::string &file, const issue_t &issue) {
        stream.element(issue_json(file, issue));
    }

    json_stream_t stream;
};

} // namespace

std::unique_ptr<writer_t> codequality_writer(output_t out) {
    return std::make_unique<codequality_writer_t>(std::move(out));
}

} // namespace infraconvert

// Each configuration as a test, for whatever shows the tests of a pipeline. A suite for each, so
// that it can tell its counts before the next is known.

#include "base/quoting.h"
#include "reports/findings_text.h"
#include "reports/formats.h"

#include <algorithm>

namespace infraconvert {

namespace {

std::string escaped(std::string_view text) {
    std::string xml;
    for (const char c : visible(text)) {
        switch (c) {
        case '&':
            xml += "&amp;";
            break;
        case '<':
            xml += "&lt;";
            break;
        case '>':
            xml += "&gt;";
            break;
        case '"':
            xml += "&quot;";
            break;
        default:
            xml += c;
        }
    }
    return xml;
}

std::string attribute(const char *name, std::string_view value) {
    return std::string(" ") + name + "=\"" + escaped(value) + '"';
}

// What is wrong with a configuration, as the element of its test; nothing when it is all right.
std::string trouble(const audited_t &audited) {
    const auto element = [](const std::string &name, const std::string &type,
                            const std::string &message, const std::string &text) {
        return "      <" + name + attribute("type", type) + attribute("message", message) + '>' +
               escaped(text) + "</" + name + ">\n";
    };
    if (audited.state == state_t::unusable)
        return element("error", audited.is_blocked() ? "blocked" : "unusable", audited.problem, "");
    if (!audited.needs_hands())
        return "";
    const auto first =
        std::find_if(audited.findings.begin(), audited.findings.end(), is_open_error);
    const std::string type = first == audited.findings.end() ? "failed" : first->kind->code;
    return element("failure", type, count_text(count_findings(audited.findings)),
                   findings_text(audited.findings, severity_t::note));
}

// What is to be known of a configuration that is all right.
std::string remarks(const audited_t &audited) {
    if (audited.needs_hands() || audited.findings.empty())
        return "";
    return "      <system-out>" + escaped(findings_text(audited.findings, severity_t::note)) +
           "</system-out>\n";
}

class junit_writer_t : public writer_t {
  public:
    explicit junit_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override {
        write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" +
              attribute("name", "infraconvert audit " + route_text(header.route)) + ">\n");
    }

    void add(const audited_t &audited) override {
        const bool unusable = audited.state == state_t::unusable;
        const auto count = [](bool one) { return one ? "1" : "0"; };
        write("  <testsuite" + attribute("name", audited.file) + attribute("tests", "1") +
              attribute("failures", count(audited.needs_hands() && !unusable)) +
              attribute("errors", count(unusable)) + ">\n    <testcase" +
              attribute("name", audited.file) + attribute("classname", route_text(audited.route)) +
              attribute("file", audited.file) + ">\n" + trouble(audited) + remarks(audited) +
              "    </testcase>\n  </testsuite>\n");
    }

    void end(const totals_t &) override { write("</testsuites>\n"); }

  private:
    output_t write;
};

} // namespace

std::unique_ptr<writer_t> junit_writer(output_t out) {
    return std::make_unique<junit_writer_t>(std::move(out));
}

} // namespace infraconvert

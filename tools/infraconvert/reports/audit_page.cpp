// The page: its data stand in it, the configurations one by one ahead of the summary.

#include "base/exact_text.h"
#include "conversion/services.h"
#include "reports/findings_json.h"
#include "reports/formats.h"
#include "reports/record_json.h"
#include "reports/report_page.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;
using edit_t = diff_line_t::edit_t;

// JSON that may stand in a script element: nothing in it can end the element.
std::string embedded(const json &value) {
    std::string safe;
    for (const char c : dumped(value))
        safe += c == '<' ? std::string("\\u003c") : std::string(1, c);
    return safe;
}

std::string data_element(const std::string &id, const std::string &data) {
    return "<script type=\"application/json\" id=\"" + id + "\">" + data + "</script>\n";
}

json rows_json(const std::vector<diff_line_t> &diff) {
    constexpr const char *marks[] = {"=", "-", "+", "."};
    json rows = json::array();
    for (const diff_line_t &line : diff) {
        rows.push_back(
            {marks[static_cast<size_t>(line.edit)], line.before, line.after, line.text, line.rule});
        if (!line.hop.empty())
            rows.back().push_back(line.hop);
    }
    return rows;
}

std::string page_details(const audited_t &audited) {
    const json record = record_json(audited);
    json findings = record.at("findings");
    for (json &finding : findings)
        finding.erase("title"); // the page has it with the code
    json details = {{"findings", findings}, {"services", record.at("steps")}};
    details["rows"] = rows_json(audited.details->diff);
    details["effects"] = record.at("effects");
    if (!audited.input_digest.empty())
        details["digests"] = record.at("digests");
    return embedded(details);
}

json entry_of(const audited_t &audited) {
    const finding_count_t count = count_findings(audited.findings);
    json codes = json::array(), open = json::array();
    const auto add_once = [](json &list, const char *code) {
        if (list.empty() || list.back() != code)
            list.push_back(code);
    };
    for (const finding_t &finding : audited.findings) {
        add_once(codes, finding.kind->code);
        if (!finding.accepted)
            add_once(open, finding.kind->code);
    }
    const bool is_known = audited.problem.empty();
    return {{"path", audited.file},
            {"from", is_known ? json(audited.route.front()) : json(nullptr)},
            {"alike", audited.alike},
            {"state", state_name(audited.state)},
            {"problem", audited.problem},
            {"services", audited.services},
            {"codes", codes},
            {"open", open},
            {"tally", {count.errors, count.warnings, count.notes, count.agreed}}};
}

json rule_words() {
    json rules = json::object();
    for (const service_t &service : services()) {
        for (const engine::rule_t &rule : service.rules)
            rules[rule.id] = std::string(service.title) + ": " + rule.plain_words;
    }
    return rules;
}

class page_writer_t : public writer_t {
  public:
    explicit page_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &head) override {
        header = head;
        write("<!DOCTYPE html>\n<html lang=\"en\">\n<meta charset=\"utf-8\">\n"
              "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
              "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
              "style-src 'unsafe-inline'; script-src 'unsafe-inline'\">\n"
              "<title>infraconvert audit</title>\n<style>" +
              std::string(page_style) + "</style>\n" + page_body);
    }
    void add(const audited_t &audited) override {
        entries += (entries.empty() ? "" : ",") + embedded(entry_of(audited));
        if (audited.details)
            write(data_element("configuration-" + std::to_string(count), page_details(audited)));
        count++;
    }
    void end(const totals_t &totals) override {
        json summary = header_json(header);
        summary["route"] = summary.at("via"); // the page shows it between the two others
        summary["rules"] = rule_words();
        const json sums = totals_json(totals);
        summary["states"] = sums.at("states");
        summary["codes"] = sums.at("codes");
        summary["idle_exceptions"] = sums.at("idle_exceptions");
        std::string data = embedded(summary);
        data.pop_back();
        write(data_element("summary", data + ",\"configurations\":[" + entries + "]}") +
              "<script>" + page_script + "</script>\n</html>\n");
    }

  private:
    output_t write;
    header_t header;
    std::string entries;
    size_t count = 0;
};

} // namespace

std::unique_ptr<writer_t> page_writer(output_t out) {
    return std::make_unique<page_writer_t>(std::move(out));
}

} // namespace infraconvert

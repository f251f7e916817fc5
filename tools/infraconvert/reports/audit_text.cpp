// For people: one configuration with all that was found, many by what needs hands.

#include "base/quoting.h"
#include "reports/findings_text.h"
#include "reports/first_screen.h"
#include "reports/formats.h"

namespace infraconvert {

namespace {

class text_writer_t : public writer_t {
  public:
    explicit text_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &head) override { header = head; }
    void add(const audited_t &audited) override {
        if (header.count == 1 || header.details)
            write(visible(text_of(audited)));
    }
    void end(const totals_t &totals) override {
        if (header.count != 1)
            write((header.details ? "\n" : "") + first_screen(header, totals));
    }

  private:
    // Where each configuration has a route of its own, which one it is.
    std::string own_route(const audited_t &audited) const {
        const bool tells = header.route.front().empty() && audited.problem.empty();
        return tells ? route_text(audited.route) + ", " : "";
    }

    std::string text_of(const audited_t &audited) const {
        const std::string head = quoted_name(audited.file) + ": " + own_route(audited) +
                                 (audited.is_blocked() ? "blocked" : state_name(audited.state)) +
                                 ", " + (audited.verdict.empty() ? "" : audited.verdict + ", ");
        if (!audited.problem.empty())
            return head + audited.problem + '\n';
        return head + count_text(count_findings(audited.findings)) + '\n' +
               findings_text(audited.findings, severity_t::note);
    }

    output_t write;
    header_t header;
};

} // namespace

std::unique_ptr<writer_t> text_writer(output_t out) {
    return std::make_unique<text_writer_t>(std::move(out));
}

} // namespace infraconvert

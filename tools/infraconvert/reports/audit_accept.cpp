// What is there today as exceptions, so that only what is new stops anybody from now on.

#include "reports/formats.h"
#include "window/exceptions.h"

namespace infraconvert {

namespace {

class accept_writer_t : public writer_t {
  public:
    explicit accept_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override {
        write("# Agreed on " + header.date.substr(0, header.date.find('T')) + ", " +
              route_text(header.route) +
              ".\n# Add to each line why it is all right, and until when (YYYY-MM-DD).\n"
              "# code | configuration | stanza | reason | until\n");
    }
    void add(const audited_t &audited) override {
        write(exceptions_for(audited.file, audited.findings));
    }
    void end(const totals_t &) override {}

  private:
    output_t write;
};

} // namespace

std::unique_ptr<writer_t> accept_writer(output_t out) {
    return std::make_unique<accept_writer_t>(std::move(out));
}

} // namespace infraconvert

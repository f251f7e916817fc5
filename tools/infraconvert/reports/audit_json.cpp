// One JSON document, or JSON lines; both of the same objects.

#include "reports/formats.h"
#include "reports/json_stream.h"
#include "reports/record_json.h"

namespace infraconvert {

namespace {

class json_writer_t : public writer_t {
  public:
    explicit json_writer_t(output_t out) : stream(std::move(out)) {}

    void begin(const header_t &header) override {
        stream.open('{');
        stream.members(header_json(header));
        stream.open("configurations", '[');
    }
    void add(const audited_t &audited) override { stream.element(record_json(audited)); }
    void end(const totals_t &totals) override {
        stream.close();
        stream.members(totals_json(totals));
        stream.close();
    }

  private:
    json_stream_t stream;
};

// A part of a stream that was cut off lacks its last line.
class jsonl_writer_t : public writer_t {
  public:
    explicit jsonl_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override { write(json_line(header_json(header))); }
    void add(const audited_t &audited) override { write(json_line(record_json(audited))); }
    void end(const totals_t &totals) override {
        nlohmann::ordered_json line = {{"kind", totals_kind}};
        line.update(totals_json(totals));
        write(json_line(line));
    }

  private:
    output_t write;
};

} // namespace

std::unique_ptr<writer_t> json_writer(output_t out) {
    return std::make_unique<json_writer_t>(std::move(out));
}

std::unique_ptr<writer_t> jsonl_writer(output_t out) {
    return std::make_unique<jsonl_writer_t>(std::move(out));
}

} // namespace infraconvert

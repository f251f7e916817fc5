#include "reports/effects_writers.h"

#include "base/exact_text.h"
#include "base/messages.h"
#include "base/quoting.h"
#include "reports/json_document.h"
#include "reports/json_stream.h"

namespace infraconvert {

namespace {

using json = nlohmann::ordered_json;

json record_json(const effects_record_t &record) {
    json document = {{"path", record.name}};
    if (!record.problem.empty())
        document["problem"] = record.problem;
    add_route(document, record.route);
    document["failed"] = !record.failure.empty();
    document["failure"] = or_null(record.failure);
    document["rows"] = rows_json(record.rows);
    add_exact_bytes(document);
    return document;
}

json head_json(const header_t &header) {
    json document = {{"kind", "infraconvert effects"}};
    document.update(document_of("effects"));
    document["tool_version"] = header.tool_version;
    document["date"] = header.date;
    add_route(document, header.route);
    document["masked"] = header.masked;
    return document;
}

// People see what is not as it should be on standard error, so that the tables can go into a file.
class text_writer_t : public effects_writer_t {
  public:
    explicit text_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override { alone = header.count == 1; }
    void add(const effects_record_t &record) override {
        const std::string head =
            (first ? "" : "\n") + record.name + ", " + route_text(record.route) + ":\n";
        const bool shows = record.problem.empty() && !record.rows.empty();
        if (shows)
            write((alone ? "" : visible(head)) + visible(effects_text(record.rows)));
        first = first && !shows;
        if (!record.problem.empty())
            message(record.problem);
        if (!record.failure.empty() && !alone)
            message(record.name + ": " + record.failure);
        if (record.before)
            message(record.name + ": these are the effects before the conversion, which fails");
        else if (record.problem.empty() && record.rows.empty())
            message(record.name + ": no effects: no policy-map with actions is attached");
    }
    void end() override {}

  private:
    output_t write;
    bool alone = false, first = true;
};

// One alone writes nothing ahead of its record: what keeps the command from it is an error then.
class json_writer_t : public effects_writer_t {
  public:
    explicit json_writer_t(output_t out) : stream(std::move(out)) {}

    void begin(const header_t &header) override {
        alone = header.count == 1;
        if (alone)
            return;
        stream.open('{');
        stream.members(head_json(header));
        stream.open("configurations", '[');
    }
    void add(const effects_record_t &record) override {
        if (!alone)
            return stream.element(record_json(record));
        stream.open('{');
        stream.members(document_of("effects"));
        stream.members(record_json(record));
    }
    void end() override {
        if (!alone)
            stream.close();
        stream.close();
    }

  private:
    json_stream_t stream;
    bool alone = false;
};

class jsonl_writer_t : public effects_writer_t {
  public:
    explicit jsonl_writer_t(output_t out) : write(std::move(out)) {}

    void begin(const header_t &header) override { write(json_line(head_json(header))); }
    void add(const effects_record_t &record) override {
        count++;
        write(json_line(record_json(record)));
    }
    void end() override { write(json_line({{"kind", "infraconvert totals"}, {"count", count}})); }

  private:
    output_t write;
    size_t count = 0;
};

} // namespace

std::unique_ptr<effects_writer_t> effects_writer(const std::string &format, output_t out) {
    if (format == "json")
        return std::make_unique<json_writer_t>(std::move(out));
    if (format == "jsonl")
        return std::make_unique<jsonl_writer_t>(std::move(out));
    return std::make_unique<text_writer_t>(std::move(out));
}

} // namespace infraconvert

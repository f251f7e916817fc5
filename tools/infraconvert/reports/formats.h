// The forms in which records are given out, in one table.
#pragma once

#include "reports/writer.h"

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace infraconvert {

struct format_t {
    const char *name; // on the command line
    std::unique_ptr<writer_t> (*make)(output_t out);
};
// All formats, the one without --format first.
std::span<const format_t> formats();

// Their names as help and errors list them: with commas, and "or" ahead of the last.
std::string format_names();
// Null for a format that there is not.
std::unique_ptr<writer_t> writer_named(const std::string &name, output_t out);

std::unique_ptr<writer_t> text_writer(output_t out);
std::unique_ptr<writer_t> json_writer(output_t out); // one document
std::unique_ptr<writer_t>
jsonl_writer(output_t out); // a header, the records, the totals: each a line
std::unique_ptr<writer_t> sarif_writer(output_t out);
std::unique_ptr<writer_t> junit_writer(output_t out);       // each configuration a test
std::unique_ptr<writer_t> codequality_writer(output_t out); // issues beside lines
std::unique_ptr<writer_t> page_writer(output_t out);        // HTML; records need their details
std::unique_ptr<writer_t> accept_writer(output_t out); // a file of exceptions, for --accept @FILE

} // namespace infraconvert

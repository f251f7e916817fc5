// How far the lines of a configuration are known to hold no secret.
#pragma once

#include "secrets/line_pattern.h"

#include <memory>
#include <unordered_map>

namespace infraconvert {

class harmless_lines_t {
  public:
    struct body_t; // of a kind of stanza

    struct match_t {
        size_t words = 0;             // from the first, that tell nothing
        bool complete = false;        // the whole line is known
        const body_t *body = nullptr; // of the stanza that the line opens; null: an unknown one
    };

    static const harmless_lines_t &get();

    // A line that opens a stanza, and a line within one; `body` null: an unknown one.
    match_t first_line(std::span<const std::string_view> words) const;
    match_t body_line(const body_t *body, std::span<const std::string_view> words) const;

  private:
    struct row_t {
        line_pattern_t pattern;
        const body_t *body;
    };
    class patterns_t {
      public:
        void add(std::string_view row, const body_t *body);
        match_t best(std::span<const std::string_view> words) const;

      private:
        std::vector<std::unique_ptr<const row_t>> rows;
        std::unordered_map<std::string_view, std::vector<const row_t *>> by_first_word;
        std::vector<const row_t *> others; // that may begin with any word of a shape
    };

    harmless_lines_t();
    // Reads a table; `also` gets the lines of stanzas too.
    void read(std::string_view table, patterns_t *also);
    static match_t match(const patterns_t &patterns, std::span<const std::string_view> words);

    std::vector<std::unique_ptr<body_t>> bodies;
    patterns_t headers, in_maps, everywhere;
};

struct harmless_lines_t::body_t {
    patterns_t patterns;
    bool has_lines = false;
};

} // namespace infraconvert

// A saved configuration as stanzas, of which those that are typed into are taken apart into lines.
//
//     ! lines ahead of the first stanza   a stanza without a header
//     interface Ethernet1/1               a header
//       no shutdown                       its body, with the comments behind it
//     !
//
// Whatever is asked takes the time of its answer, and no time for what stands elsewhere in the
// text.
#pragma once

#include <deque>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace infraconvert::mending {

using body_t = std::list<std::string_view>;

class saved_stanza_t {
  public:
    saved_stanza_t(std::string_view first_line, std::string_view below, size_t place)
        : header(first_line), rest(below), rank(place) {}

    std::string_view first_line() const { return header; }
    body_t &body(); // without the first line
    // Ahead of the comments at the end of the body.
    body_t::iterator end_of_body();
    void append_to(std::string &text) const;

    // The stanza goes; the comments at its end stay where they are.
    void take_away();
    bool is_gone() const { return gone; }
    // A stanza with a lower one stands ahead; of a new one that of its neighbour.
    size_t order() const { return rank; }

  private:
    std::string_view header, rest;
    size_t rank;
    body_t lines;
    bool apart = false, gone = false;
};

class saved_text_t {
  public:
    // The text must outlive the object, and so must every line that is put into it.
    explicit saved_text_t(std::string_view text);

    using stanzas_t = std::vector<saved_stanza_t *>;
    // The stanzas with this first line, by its words.
    stanzas_t stanzas(const std::string &header);

    // A new stanza behind the last of its kind, or where the switch would write the first of it.
    saved_stanza_t &add(std::string_view header);
    // A new stanza ahead of the first of its kind.
    saved_stanza_t &add_in_front(std::string_view header);

    std::string text() const;

  private:
    using list_t = std::list<saved_stanza_t>;
    using places_t = std::vector<list_t::iterator>; // in the order of the text

    std::string_view words_of(std::string_view header);
    list_t::iterator *first_of(std::string_view kind);
    list_t::iterator *last_of(std::string_view kind);
    list_t::iterator *last_of(std::string_view kind, size_t most_order);
    saved_stanza_t &add_behind(list_t::iterator at, std::string_view header);
    saved_stanza_t &add_ahead(list_t::iterator at, std::string_view header);

    list_t all;
    std::unordered_map<std::string_view, places_t> by_header;
    std::unordered_map<std::string_view, places_t> by_kind; // by the first word, or "system qos"
    std::deque<std::string> words; // of first lines that are written otherwise
    bool ends_with_newline;
};

} // namespace infraconvert::mending

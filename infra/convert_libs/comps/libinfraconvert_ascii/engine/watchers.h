// What is known of a text while it is being edited, and stays true: watchers are told of every
// edit, and look at the edited place instead of the whole text.
#pragma once

#include "engine/engine.h"

#include <string>
#include <string_view>
#include <vector>

namespace engine {

// What an edit did to the text: `removed` bytes from `at` on gave way to `inserted` bytes. That a
// text is given back or loaded counts as an edit of all of it.
struct edit_t {
    position_t at;
    uint32_t removed, inserted;

    position_t behind_removed() const { return at + removed; }
    position_t behind_inserted() const { return at + inserted; }
    // By how much, modulo 2^32, the text behind it moved.
    uint32_t shift() const { return inserted - removed; }
};

// Is told of every edit of an instance's text while it lives.
class edit_watcher_t {
  public:
    explicit edit_watcher_t(engine_t &watched);
    edit_watcher_t(const edit_watcher_t &) = delete;
    edit_watcher_t &operator=(const edit_watcher_t &) = delete;

    // The edit is done.
    virtual void edited(const edit_t &edit) = 0;
    edit_watcher_t *next() const { return next_watcher; }

  protected:
    ~edit_watcher_t();

    engine_t &e;

  private:
    edit_watcher_t *next_watcher;
};

// A search that is asked again from ever later positions, while its hits may lie far ahead:
//
//     class-map a      asked here: "  description" is found below c
//     class-map b      asked here: the same, without a look at the text
//     class-map c
//       description x
//
// Each byte of the text is looked at once, however many maps stand in front of a hit or behind the
// last one.
class search_ahead_t final : edit_watcher_t {
  public:
    // `text` is not copied.
    search_ahead_t(engine_t &watched, std::string_view text)
        : edit_watcher_t(watched), wanted(text) {}

    // First `wanted` that begins at or behind `at`, else nowhere.
    position_t from(position_t at);

  private:
    void edited(const edit_t &edit) override;

    const std::string_view wanted;
    // Known: no `wanted` begins in [clear_from, clear_to).
    position_t clear_from = 0;
    position_t clear_to = 0;
};

// The last places of some texts that begin alike, such as the last headers of each type, while
// passes edit in front of them and add further ones behind. The whole text is searched once.
class last_hits_t final : edit_watcher_t {
  public:
    // The texts are `common` with each of `endings` behind it.
    last_hits_t(engine_t &watched, const std::string &common,
                std::initializer_list<const char *> endings);

    const std::string beginning; // of all texts

    // Start of the last text with the ending of that number, else nowhere.
    position_t find(size_t ending);
    // First stanza behind its line, else nowhere; also when there is no such text. What comes into
    // that stanza is looked at once, however long it grows.
    position_t stanza_behind(size_t ending);

  private:
    struct hit_t {
        std::string wanted;
        // The following holds.
        bool known = false;
        position_t at = nowhere;
        position_t clear_to = 0; // no stanza begins behind the line of the hit and up to here
    };

    void edited(const edit_t &edit) override;
    void search(hit_t &hit, position_t from, position_t before);
    void update(hit_t &hit, const edit_t &edit, bool may_bring);

    std::vector<hit_t> hits;
    size_t longest = 0; // of the texts
    position_t end = 0; // of the text that a search from its start sees
};

} // namespace engine

// What is told about configurations, in words of our own and in pieces of theirs, with their
// secrets out of sight.
#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace infraconvert {

class mask_t {
  public:
    // Takes note of what shows of a configuration and what does not. Returns it masked
    // (masked_text.h).
    std::string learn(std::string_view configuration);

    // A finding's detail, a reason, an effect. A word shows when it shows in a configuration or is
    // one of our own (own_words.h). Any other is masked, with all behind it: up to the next ", ",
    // or within quotes up to the last quote.
    std::string message(std::string_view text) const;

    // Lines of the converters' logs, in the same way, but each up to its end. Numbers of bytes go
    // too: they add up to the length of what is masked.
    std::string logs(std::string_view lines) const;

  private:
    enum class kind_t { message, log };
    class teller_t;
    void learn_line(std::string_view line, std::span<const std::string_view> words, size_t count);
    struct masked_line_t {
        size_t size = 0, visible = 0;
    };
    masked_line_t line_at(std::string_view text, size_t start) const;
    bool shows(std::string_view word) const;

    struct hash_t : std::hash<std::string_view> {
        using is_transparent = void;
    };
    using set_t = std::unordered_set<std::string, hash_t, std::equal_to<>>;
    set_t shown, hidden; // words of configurations
    // Lines that do not show as a whole, and their ends; how much of each shows.
    std::unordered_map<std::string, size_t, hash_t, std::equal_to<>> lines;
};

// The texts of one conversion, each looked through once for all that is told of it.
class masked_texts_t {
  public:
    using text_t = std::shared_ptr<const std::string>;

    // The text masked.
    const text_t &masked(const text_t &text);
    // The mask that knows the texts so far.
    const mask_t &mask() const { return known; }

  private:
    mask_t known;
    std::map<text_t, text_t> texts;
};

} // namespace infraconvert

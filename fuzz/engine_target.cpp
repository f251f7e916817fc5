// A run of the engine's operations over a small text, beside the same on a plain string. An input
// is
//
//     text
//     0x01, the length of the text's pieces, and then three bytes for each operation: which, where,
//     and how much or which word
//
// with positions in front of the text and behind it among them.

#include "check.h"

#include "engine/engine.h"
#include "engine/watchers.h"

#include <algorithm>
#include <cstring>

using namespace engine;

namespace {

FILE *log_stream = nullptr;
engine_t e = {
    .prefix = "fuzz", .log_path = "/dev/null", .log_stream = &log_stream, .traces_edits = true};

// Short words over few letters, so that edits form and break them.
const char *const words[] = {"a", "ab", "\n", "aa", "\na", "aba", "\n\n", "  a", "b\n", "abab"};

// The text as the engine should see it.
struct model_t {
    std::string text;
    size_t room; // for the text, its marker and a zero byte

    size_t end(size_t from) const { return std::min(text.find('\0', from), text.size()); }

    position_t find(std::string_view wanted, size_t from) const {
        if (from >= text.size())
            return nowhere;
        const size_t found = std::string_view(text).substr(0, end(from)).find(wanted, from);
        return found == text.npos ? nowhere : static_cast<position_t>(found);
    }

    void erase(position_t from, uint32_t size) {
        const auto in_front = static_cast<uint32_t>(-static_cast<int32_t>(from));
        if (static_cast<int32_t>(from) < 0) {
            size = size > in_front ? size - in_front : 0;
            from = 0;
        }
        if (from < text.size())
            text.erase(from, size);
    }

    bool insert(position_t at, std::string_view inserted) {
        if (at > text.size() || text.size() + inserted.size() + 2 > room ||
            inserted.find(end_marker) != inserted.npos)
            return false;
        text.insert(at, inserted);
        return true;
    }

    void remove(std::string_view wanted, uint32_t before, uint32_t after) {
        bool removed = true;
        while (removed) {
            removed = false;
            for (position_t at = 0; (at = find(wanted, at)) != nowhere; removed = true) {
                const size_t size = text.size();
                erase(at - before, static_cast<uint32_t>(wanted.size()) + before + after);
                if (text.size() == size)
                    return;
            }
        }
    }

    // False, with nothing of value in the text, where there is no room.
    bool replace_all(std::string_view wanted, std::string_view replacement) {
        for (position_t at = 0; (at = find(wanted, at)) != nowhere;) {
            text.replace(at, wanted.size(), replacement);
            at += static_cast<position_t>(replacement.size());
        }
        return text.size() + 2 <= room;
    }

    std::string line(position_t from, uint32_t length) const {
        if (from > text.size())
            return "";
        const std::string whole = text + end_marker;
        const size_t newline = std::min(whole.find('\n', from), whole.find('\0', from));
        return whole.substr(from, std::min<size_t>(length, newline - from));
    }

    position_t prevline(position_t from, position_t first) const {
        const size_t before = std::min<size_t>(from, text.size());
        if (before <= first)
            return first;
        const size_t newline = std::string_view(text).substr(first, before - first).rfind('\n');
        return newline == text.npos ? first : first + static_cast<position_t>(newline) + 1;
    }

    bool nextstanza(position_t at) const { return at < text.size() && isalpha(text[at]); }

    position_t goto_nextstanza(position_t from) const {
        for (position_t at = from; (at = find("\n", at)) != nowhere;) {
            if (nextstanza(++at))
                return at;
        }
        return nowhere;
    }
};

// A byte as a position: near the start, near the end, in front of the text, or far away.
position_t position_of(uint8_t byte, const model_t &model) {
    const auto size = static_cast<position_t>(model.text.size());
    if (byte < 200)
        return byte % (size + 3);
    if (byte < 240)
        return size - std::min(size, position_t{byte} - 200);
    return byte < 250 ? -(position_t{byte} - 239) : nowhere - (255 - position_t{byte}) * 1000;
}

bool is_in_reach(position_t at, const model_t &model) { return at <= model.text.size(); }

// Carries out one operation on both and compares what they answer. Returns false after a refused
// edit, which ends a conversion.
bool operate(model_t &model, uint8_t which, uint8_t where, uint8_t argument) {
    const position_t at = position_of(where, model);
    const char *word = words[argument % std::size(words)];
    const char *other = words[argument / std::size(words) % std::size(words)];
    switch (which % 9) {
    case 0:
        delete_text(e, at, argument);
        model.erase(at, argument);
        return true;
    case 1: {
        const std::string inserted =
            argument < 250 ? std::string(word) : std::string(1, end_marker);
        const bool done = insert_text(e, at, inserted);
        fuzz::claim(done == model.insert(at, inserted), "an insertion is refused where it must be");
        return done;
    }
    case 2: {
        const uint32_t before = where % 3 - 1u, after = where / 3 % 3;
        remove_regexp(e, word, before, after);
        model.remove(word, before, after);
        return true;
    }
    case 3: {
        const replacement_t replacement = {word, other, "found", "deleted"};
        const bool done = replace_all(e, "fuzz", replacement) == 0;
        fuzz::claim(done == model.replace_all(word, other), "a replacement fails without room");
        return done;
    }
    case 4:
        fuzz::claim(find(e, word, at) == model.find(word, at), "both find the same");
        return true;
    case 5:
        if (is_in_reach(at, model))
            fuzz::claim(getline(e, at, argument + 1u) == model.line(at, argument),
                        "both read the same line");
        return true;
    case 6:
        if (is_in_reach(at, model))
            fuzz::claim(prevline(e, at, argument) == model.prevline(at, argument),
                        "both go to the same line start");
        return true;
    case 7:
        fuzz::claim(goto_nextstanza(e, at) == model.goto_nextstanza(at),
                    "the next stanza is found");
        return true;
    default: {
        const position_t first = model.find("\na", 0);
        search_ahead_t header(e, "\na"), other_header(e, "ab");
        fuzz::claim(file_start_section(e, "file_start_section", "fuzz", {&header, &other_header}) ==
                        (first == nowhere ? model.find("ab", 0) : first),
                    "the section is found");
        return true;
    }
    }
}

// In pieces so short that a short text has many.
void load_in_pieces(const std::string &original, uint32_t piece_length) {
    const auto size = static_cast<uint32_t>(original.size());
    delete e.text;
    e.text = new text_t(size, size * e.capacity_factor, piece_length);
    memcpy(e.text->memory(), original.data(), size);
    e.text->loaded(size);
}

void compare(const model_t &model) {
    const auto size = static_cast<uint32_t>(model.text.size());
    fuzz::claim(e.text->size() == size, "both texts have one size");
    fuzz::claim(e.text->copy(0, size) == model.text, "both texts are equal");
    fuzz::claim(e.text->at(size) == end_marker, "the marker stands behind the text");
    fuzz::claim(e.text->at(size + 1) == '\0', "a zero byte stands behind the marker");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::place_t place;
    const std::string_view input(reinterpret_cast<const char *>(data), size);
    const size_t separator = std::min(input.find('\x01'), size);
    const std::string original(input.substr(0, separator));
    place.set_configuration(original);
    log_init(e);
    if (read_ascii_file(e, place.path()) != 0) {
        fuzz::claim(original.empty(), "only an empty file cannot be loaded");
        return 0;
    }
    if (separator + 1 < size)
        load_in_pieces(original, 1 + data[separator + 1] % 16);
    model_t model = {original, original.size() * e.capacity_factor};
    bool intact = true;
    for (size_t i = separator + 2; intact && i + 2 < size; i += 3) {
        intact = operate(model, data[i], data[i + 1], data[i + 2]);
        if (intact)
            compare(model);
    }
    if (intact) {
        fuzz::claim(write_ascii_file(e, place.path()) == 0, "the text can be saved");
        const std::string saved = model.text.substr(0, model.text.find(end_marker));
        fuzz::claim(place.configuration() == saved, "what is saved is the text up to the marker");
    }
    place.taken_output();
    return 0;
}

// The text in pieces against the text as one plain string, over random edits with pieces of a few
// bytes.

#include "engine/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

using engine::nowhere;
using engine::position_t;

// Every operation in its plainest form.
struct plain_text_t {
    std::string bytes;
    uint32_t capacity;

    uint32_t size() const { return static_cast<uint32_t>(bytes.size()); }
    char at(position_t at) const {
        return at < size() ? bytes[at] : at == size() ? engine::end_marker : '\0';
    }
    position_t end(position_t from) const {
        return static_cast<position_t>(std::min(bytes.find('\0', from), bytes.size()));
    }
    position_t find(std::string_view wanted, position_t from, position_t before) const {
        const size_t hit = bytes.substr(0, end(from)).find(wanted, from);
        return hit < before ? static_cast<position_t>(hit) : nowhere;
    }
    position_t newline_before(position_t before, position_t first) const {
        if (before <= first || first >= size())
            return nowhere;
        const size_t hit = bytes.rfind('\n', before - 1);
        return hit != bytes.npos && hit >= first ? static_cast<position_t>(hit) : nowhere;
    }
    std::string copy(position_t from, uint32_t length) const {
        return from < size() ? bytes.substr(from, length) : "";
    }
    std::string line(position_t from, uint32_t length) const {
        std::string line;
        for (char c; line.size() < length && (c = at(from)) != '\n' && c != '\0'; from++)
            line += c;
        return line;
    }
    std::string saved() const { return bytes.substr(0, bytes.find(engine::end_marker)); }
    void erase(position_t from, uint32_t length) {
        if (from < size())
            bytes.erase(from, length);
    }
    bool has_room(position_t at, uint32_t length) const {
        return at <= size() && size_t{size()} + length + 2 <= capacity;
    }
    void insert(position_t at, std::string_view inserted) { bytes.insert(at, inserted); }
};

class random_text_t : public testing::TestWithParam<uint32_t> {
  protected:
    uint32_t below(uint32_t limit) {
        return std::uniform_int_distribution<uint32_t>(0, limit - 1)(random);
    }

    // Few letters, so that searches hit; zero bytes and markers in some texts only.
    std::string some_bytes(uint32_t length) {
        std::string_view letters = "aab\n";
        if (odd_bytes)
            letters = {"aab\naab\naab\naab\n\0\xFF", 18};
        std::string bytes;
        while (bytes.size() < length)
            bytes += letters[below(static_cast<uint32_t>(letters.size()))];
        return bytes;
    }

    void begin(uint32_t size) {
        plain = {some_bytes(size), 3 * size + 9};
        text = std::make_unique<engine::text_t>(size, plain.capacity, piece_length, block_length);
        memcpy(text->memory(), plain.bytes.data(), size);
        text->loaded(size);
    }

    // Edits gather around a place that moves now and then, as those of the passes do.
    void edit() {
        place = below(8) == 0 ? below(plain.size() + 3) : place + below(4);
        if (below(4) == 0 && !odd_bytes) {
            const std::string put = some_bytes(below(6));
            const uint32_t length =
                std::min(below(6), plain.size() - std::min(place, plain.size()));
            if (place + length > plain.size() || !plain.has_room(place, 6))
                return;
            text->replace(place, length, put);
            plain.bytes.replace(place, length, put);
            return;
        }
        if (below(2) == 0) {
            const uint32_t length = below(20) == 0 ? below(60) : below(6);
            text->erase(place, length);
            plain.erase(place, length);
            return;
        }
        const std::string bytes = some_bytes(below(20) == 0 ? below(60) : below(6));
        const auto length = static_cast<uint32_t>(bytes.size());
        ASSERT_EQ(text->has_room(place, length), plain.has_room(place, length));
        if (plain.has_room(place, length)) {
            text->insert(place, bytes);
            plain.insert(place, bytes);
        }
    }

    void look() {
        const position_t from = below(plain.size() + 3), before = below(plain.size() + 3);
        const uint32_t length = below(20);
        const std::string wanted = some_bytes(1 + below(5));
        ASSERT_EQ(text->size(), plain.size());
        ASSERT_EQ(text->at(from), plain.at(from));
        ASSERT_EQ(text->end(from), from < plain.size() ? plain.end(from) : plain.size());
        ASSERT_EQ(text->find(wanted, from), plain.find(wanted, from, nowhere));
        ASSERT_EQ(text->find(wanted, from, before), plain.find(wanted, from, before));
        ASSERT_EQ(text->newline_before(before, from), plain.newline_before(before, from));
        ASSERT_EQ(text->copy(from, length), plain.copy(from, length));
        ASSERT_EQ(text->line(from, length), plain.line(from, length));
    }

    void compare_whole() {
        ASSERT_EQ(text->copy(0, nowhere), plain.bytes);
        std::string saved;
        for (position_t end = text->saved_end(); saved.size() < end;)
            saved += text->run(static_cast<position_t>(saved.size()), end);
        ASSERT_EQ(saved, plain.saved());
    }

    static constexpr uint32_t piece_length = 4, block_length = 3;
    std::mt19937 random{GetParam()};
    const bool odd_bytes = GetParam() % 2 == 1;
    position_t place = 0;
    plain_text_t plain;
    std::unique_ptr<engine::text_t> text;
};

TEST_P(random_text_t, random_edits) {
    for (int round = 0; round < 20; round++) {
        begin(1 + below(200));
        for (int step = 0; step < 300 && !HasFatalFailure(); step++) {
            edit();
            look();
            if (step % 50 == 0)
                compare_whole();
        }
        compare_whole();
        if (HasFatalFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(seeds, random_text_t, testing::Range(1u, 21u));

TEST(text, edits_all_over_it_leave_few_pieces) {
    constexpr uint32_t size = 100000, piece_length = 1000;
    engine::text_t text(size, 3 * size, piece_length);
    std::string plain(size, 'a');
    memcpy(text.memory(), plain.data(), size);
    text.loaded(size);
    for (position_t at = 0; at < text.size(); at += 10) {
        text.erase(at, 1);
        text.insert(at, "bc");
        plain.replace(at, 1, "bc");
    }
    EXPECT_EQ(text.copy(0, nowhere), plain);
    size_t runs = 0;
    for (position_t from = 0; from < text.size(); runs++)
        from += static_cast<position_t>(text.run(from, text.size()).size());
    EXPECT_LT(runs, 3 * size / piece_length);
}

// What a deletion, or a piece that moves away, leaves is room for the next insertion there.
TEST(text, takes_new_memory_only_where_there_is_no_room) {
    constexpr uint32_t size = 20'000, piece_length = 1000;
    for (const uint32_t pieces_of_block : {2u, 128u}) {
        engine::text_t text(size, 3 * size, piece_length, pieces_of_block);
        const std::string filler(size, 'a');
        memcpy(text.memory(), filler.data(), size);
        text.loaded(size);
        const auto stands_in_memory_of_file = [&](position_t at) {
            const auto distance = text.run(at, at + 1).data() - text.memory();
            return distance >= 0 && distance < ptrdiff_t{size};
        };
        text.erase(4000, piece_length); // a whole piece
        text.insert(4000, filler.substr(0, 900));
        EXPECT_TRUE(stands_in_memory_of_file(4000));
        for (const position_t at : {8000u, 10'000u, 12'000u}) {
            text.erase(at, 500);
            text.insert(at + 900, filler.substr(0, 400)); // the piece behind
            EXPECT_TRUE(stands_in_memory_of_file(at + 900)) << at;
        }
        text.insert(15'000, filler.substr(0, 3000));
        EXPECT_FALSE(stands_in_memory_of_file(15'500));
        position_t next = 17'000;
        while (!stands_in_memory_of_file(next))
            next++;
        text.insert(next, filler.substr(0, 900));
        EXPECT_TRUE(stands_in_memory_of_file(next));
    }
}

} // namespace

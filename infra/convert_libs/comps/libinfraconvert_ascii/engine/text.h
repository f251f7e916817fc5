// The text of one configuration while it is being edited.
//
//      0                        size()              capacity()
//      | bytes of the file ...  | 0xFF | 0 0 0 ...  |
//
// Positions are byte distances from the start. The end marker 0xFF stands right behind the last
// byte and is never deleted; everything behind it reads as zero. Searches and lines end at the
// first zero byte, as they would in any zero-terminated text: the marker is therefore within their
// reach, and a zero byte inside the text ends them early.
//
// After an edit a position in front of it stands for the same text; one behind it does not.
//
// The bytes stand in pieces, so that an edit moves a few KB at most, wherever it is:
//
//      memory of the file   |aaaaaaaaaaaa|..........bbbbbbb...|cccccccccccccccccccccc|
//      own memory                        |dddddddddddddddd..|
//
//      the text              aaaaaaaaaaaa dddddddddddddddd bbbbbbb cccccccccccccccccccccc
//
// At first one piece is the whole file as it was read. An edit cuts a short piece out of a long
// one, without moving a byte, and then moves bytes in that one only. A deletion leaves room behind
// the piece. An insertion that finds none there takes the room in front (b), which the piece moves
// down into; where there is none either, the piece gets memory of its own (d), and what it leaves
// is room in front of the next one. So little more memory is used than the text grows by.
//
// Some dozens of pieces make a block. A piece knows its distance from the start of its block, a
// block its distance from the start of the text: an edit corrects those of the pieces behind it in
// its block and of the blocks behind that.
//
// Invariants: no piece is empty, nor is a block; pieces of the file's memory stand there in the
// order of the text, and their bytes and room do not overlap; own memory belongs to one piece; the
// lengths add up to size().
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

using position_t = uint32_t;

// No such position.
constexpr position_t nowhere = UINT32_MAX;

constexpr char end_marker = '\xFF';

class text_t {
  public:
    // Makes room for a file of `file_size` bytes that may grow to `capacity`, its marker and a zero
    // byte included. holds_memory() tells whether there was memory for the file.
    // The edited pieces are `piece_length` to twice as long, a block has up to `pieces_of_block`.
    text_t(uint32_t file_size, uint32_t capacity, uint32_t piece_length = 2048,
           uint32_t pieces_of_block = 128);

    bool holds_memory() const { return memory_of_file != nullptr; }
    // Address of the memory, for traces and for the load.
    char *memory() { return memory_of_file.get(); }
    // Takes the first `size` bytes of the memory as the text, and sets the marker behind them.
    void loaded(uint32_t size);

    uint32_t size() const { return marker; }
    uint32_t capacity() const { return most; }

    // The byte at `at`: a byte of the text, the marker, or zero behind it.
    char at(position_t at) const {
        return looked.holds(at) ? looked.bytes[at - looked.start] : at_elsewhere(at);
    }
    // End of the text as seen from `from`: the next zero byte, or the marker.
    position_t end(position_t from) const;
    // First `wanted` that begins in [from, before), not beyond the end; else nowhere. `wanted` is
    // not empty.
    position_t find(std::string_view wanted, position_t from, position_t before = nowhere) const;
    // Last newline in [first, before), else nowhere.
    position_t newline_before(position_t before, position_t first) const;
    // Up to `length` bytes of [from, size()), fewer where the text ends.
    std::string copy(position_t from, uint32_t length) const;
    // The line at `from` without its newline, at most `length` bytes. A line that no newline ends
    // runs to its zero byte, the marker included.
    std::string line(position_t from, uint32_t length) const;
    // The bytes of [from, before) that stand together in memory; some, when there are any. Valid
    // until the next edit.
    std::string_view run(position_t from, position_t before) const;
    // End of the bytes to be saved: the first byte equal to the marker.
    position_t saved_end() const { return find_byte(end_marker, 0, marker); }

    // Removes [from, from + length), both cut to the text.
    void erase(position_t from, uint32_t length);
    // True when `length` bytes may go in at `at`: the place lies in the text, and a zero byte stays
    // behind the marker.
    bool has_room(position_t at, uint32_t length) const;
    // Inserts where there is room.
    void insert(position_t at, std::string_view inserted);
    // Puts `put` in the place of the `length` bytes at `at`, which lie in the text. There is room
    // for it, and neither holds a zero byte.
    void replace(position_t at, uint32_t length, std::string_view put);

  private:
    struct piece_t {
        char *bytes;
        uint32_t length;
        uint32_t room_in_front, room; // unused bytes in front of them and behind them
        uint32_t start;               // distance from the start of the block
        std::unique_ptr<char[]> own;  // the memory, where it is not that of the file
        const char *memory_begin() const { return bytes - room_in_front; }
        const char *memory_end() const { return bytes + length + room; }
    };
    struct block_t {
        position_t start;
        std::vector<piece_t> pieces;
    };
    struct place_t { // of a piece
        size_t block, piece;
    };

    piece_t &at_place(place_t place) { return blocks[place.block].pieces[place.piece]; }
    void look_at(position_t at) const;
    void look_at_place(place_t place) const;
    char at_elsewhere(position_t at) const;
    static size_t find_in(std::string_view bytes, std::string_view wanted);
    position_t find_byte(char wanted, position_t from, position_t before) const;
    position_t find_over_seam(std::string_view wanted, position_t seam, position_t first,
                              position_t before) const;

    void look_for_insertion(position_t at);
    place_t cut_short(place_t place, uint32_t offset);
    void split(place_t place, uint32_t head_length);
    place_t split_block(place_t place);
    piece_t *in_front_of(place_t place);
    piece_t *behind(place_t place);
    void make_room(place_t place, uint32_t length);
    bool move_into_room_in_front(place_t place, uint32_t length);
    void leave_memory(place_t place);
    void resize(place_t place, uint32_t by);
    void drop(place_t place);
    uint32_t erase_in_piece(position_t from, uint32_t length);
    void insert_in_piece(position_t at, std::string_view inserted);

    std::unique_ptr<char[]> memory_of_file;
    const uint32_t most;
    const uint32_t short_length;
    const size_t block_length;
    std::vector<block_t> blocks;
    // The piece of the last look or edit, a guess for the next one; of no length when there is
    // none.
    struct {
        position_t start = 0;
        uint32_t length = 0;
        char *bytes = nullptr;
        place_t place = {};
        bool holds(position_t at) const { return at - start < length; }
    } mutable looked = {};
    uint32_t marker = 0;

    // No zero byte stands in [from, to), and one or the marker at `to`.
    struct {
        position_t from, to;
    } mutable zero_free = {0, 0};
};

} // namespace engine

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
//      loaded memory   |aaaaaaaaaaaa|xxxxxxxxxx|bbbbbbb...|cccccccccccccccccccccc|
//      own memory                   |dddddddddddddddd..|
//
//      the text         aaaaaaaaaaaa dddddddddddddddd bbbbbbb cccccccccccccccccccccc
//      they know        their distance from the start ->|<- ... from the end
//
// At first one piece is the whole file as it was read. An edit cuts a short piece out of a long
// one, without moving a byte, and then moves bytes in that one only (b). A deletion leaves room
// behind the piece; an insertion that finds none gives the piece memory of its own (d), and what
// it leaves behind (x) is not used again. The pieces up to the one edited last know their distance
// from the start of the text, those behind it from its end, so that an edit changes neither.
//
// Invariants: no piece is empty; pieces that share memory do not overlap; own memory belongs to one
// piece; the lengths add up to size().
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

using position = uint32_t;

// No such position.
constexpr position nowhere = UINT32_MAX;

constexpr char end_marker = '\xFF';

class text_t {
  public:
    // Makes room for a file of `file_size` bytes that may grow to `capacity`, its marker and a zero
    // byte included. holds_memory() tells whether there was memory for the file. The edited pieces
    // are `piece_length` to twice as long.
    text_t(uint32_t file_size, uint32_t capacity, uint32_t piece_length = 2048);

    bool holds_memory() const { return memory_of_file != nullptr; }
    // Address of the memory, for traces and for the load.
    char *memory() { return memory_of_file.get(); }
    // Takes the first `size` bytes of the memory as the text, and sets the marker behind them.
    void loaded(uint32_t size);

    uint32_t size() const { return marker; }
    uint32_t capacity() const { return most; }

    // The byte at `at`: a byte of the text, the marker, or zero behind it.
    char at(position at) const {
        return holds(looked, at) ? pieces[looked].bytes[at - start(looked)] : at_elsewhere(at);
    }
    // End of the text as seen from `from`: the next zero byte, or the marker.
    position end(position from) const;
    // First `wanted` that begins in [from, before), not beyond the end; else nowhere. `wanted` is
    // not empty.
    position find(std::string_view wanted, position from, position before = nowhere) const;
    // Last newline in [first, before), else nowhere.
    position newline_before(position before, position first) const;
    // Up to `length` bytes of [from, size()), fewer where the text ends.
    std::string copy(position from, uint32_t length) const;
    // The line at `from` without its newline, at most `length` bytes. A line that no newline ends
    // runs to its zero byte, the marker included.
    std::string line(position from, uint32_t length) const;
    // The bytes of [from, before) that stand together in memory; some, when there are any. Valid
    // until the next edit.
    std::string_view run(position from, position before) const;
    // End of the bytes to be saved: the first byte equal to the marker.
    position saved_end() const { return find_byte(end_marker, 0, marker); }

    // Removes [from, from + length), both cut to the text.
    void erase(position from, uint32_t length);
    // True when `length` bytes may go in at `at`: the place lies in the text, and a zero byte stays
    // behind the marker.
    bool has_room(position at, uint32_t length) const;
    // Inserts where there is room.
    void insert(position at, std::string_view inserted);
    // Puts `put` in the place of the `length` bytes at `at`, which lie in the text. There is room
    // for it, and neither holds a zero byte.
    void replace(position at, uint32_t length, std::string_view put);

  private:
    struct piece_t {
        char *bytes;
        uint32_t length;
        uint32_t room;                    // unused bytes behind them
        uint32_t distance;                // of the first byte, see start()
        std::unique_ptr<char[]> own = {}; // the memory, where it is not that of the file
    };

    position start(size_t piece) const {
        const uint32_t distance = pieces[piece].distance;
        return piece <= edited ? distance : marker - distance;
    }
    bool holds(size_t piece, position at) const {
        return piece < pieces.size() && at - start(piece) < pieces[piece].length;
    }
    size_t piece_at(position at) const;
    char at_elsewhere(position at) const;
    static size_t find_in(std::string_view bytes, std::string_view wanted);
    position find_byte(char wanted, position from, position before) const;
    position find_over_seam(std::string_view wanted, position seam, position first,
                            position before) const;

    void count_from_other_side(size_t piece) {
        pieces[piece].distance = marker - pieces[piece].distance;
    }
    void make_edited(size_t piece);
    size_t make_short(size_t piece, position at);
    void split(size_t piece, uint32_t head_length);
    void make_room(piece_t &piece, uint32_t length);
    void drop_edited();
    uint32_t erase_in_piece(position from, uint32_t length);
    void insert_in_piece(position at, std::string_view inserted);

    std::unique_ptr<char[]> memory_of_file;
    const uint32_t most;
    const uint32_t short_length;
    std::vector<piece_t> pieces;
    size_t edited = 0;         // the piece of the last edit
    mutable size_t looked = 0; // the piece of the last look, a guess for the next one
    uint32_t marker = 0;

    // No zero byte stands in [from, to), and one or the marker at `to`.
    struct {
        position from, to;
    } mutable zero_free = {0, 0};
};

} // namespace engine

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
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace engine {

using position = uint32_t;

// No such position.
constexpr position nowhere = UINT32_MAX;

constexpr char end_marker = '\xFF';

class text_t {
  public:
    // Makes room for `capacity` bytes, all zero. holds_memory() tells whether there was any.
    explicit text_t(uint32_t capacity);

    bool holds_memory() const { return bytes != nullptr; }
    // Address of the memory, for traces and for the load.
    char *memory() { return bytes.get(); }
    // Takes the first `size` bytes of the memory as the text, and sets the marker behind them.
    void loaded(uint32_t size);

    uint32_t size() const { return marker; }
    uint32_t capacity() const { return allocated; }

    // The byte at `at`: a byte of the text, the marker, or zero behind it.
    char at(position at) const;
    // End of the text as seen from `from`: the next zero byte, or the marker.
    position end(position from) const;
    // First `wanted` that begins in [from, before), not beyond the end; else nowhere.
    position find(std::string_view wanted, position from, position before = nowhere) const;
    // Last newline in [first, before), else nowhere.
    position newline_before(position before, position first) const;
    // Up to `length` bytes of [from, size()), fewer where the text ends.
    std::string copy(position from, uint32_t length) const;
    // The line at `from` without its newline, at most `length` bytes. A line that no newline ends
    // runs to its zero byte, the marker included.
    std::string line(position from, uint32_t length) const;
    // From the start up to the first zero byte, the marker included.
    std::string_view up_to_zero() const { return bytes.get(); }
    // The bytes of the file to be saved: up to the first byte equal to the marker.
    std::string_view saved_bytes() const;

    // Removes [from, from + length), both cut to the text.
    void erase(position from, uint32_t length);
    // True when `length` bytes may go in at `at`: the place lies in the text, and a zero byte stays
    // behind the marker.
    bool has_room(position at, uint32_t length) const;
    // Inserts where there is room.
    void insert(position at, std::string_view inserted);

  private:
    struct releaser {
        void operator()(char *memory) const { free(memory); }
    };
    std::unique_ptr<char[], releaser> bytes;
    uint32_t allocated;
    uint32_t marker = 0;
    bool has_zero = false; // a zero byte stands in the text, so every end must be searched for
};

} // namespace engine

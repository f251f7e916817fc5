// The text in pieces; text.h draws them.

#include "engine/text.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace engine {

namespace {

// `length` bytes further than `at`, but not beyond `limit`. Never forms the sum of both, which 32
// bits need not hold.
position_t further(position_t at, size_t length, position_t limit) {
    return at < limit ? at + static_cast<position_t>(std::min<size_t>(length, limit - at)) : limit;
}

} // namespace

text_t::text_t(uint32_t file_size, uint32_t capacity, uint32_t piece_length,
               uint32_t pieces_of_block)
    : memory_of_file(new (std::nothrow) char[file_size]), most(capacity),
      short_length(piece_length), block_length(pieces_of_block) {}

void text_t::loaded(uint32_t size) {
    blocks.clear();
    looked = {};
    marker = size;
    if (size > 0) {
        blocks.push_back({.start = 0, .pieces = {}});
        blocks.front().pieces.push_back({memory_of_file.get(), size, 0, 0, 0, nullptr});
    }
    zero_free = {0, find_byte('\0', 0, marker)};
}

// ---- Looking ----

void text_t::look_at_place(place_t place) const {
    const block_t &block = blocks[place.block];
    const piece_t &piece = block.pieces[place.piece];
    looked = {block.start + piece.start, piece.length, piece.bytes, place};
}

// Looks at the piece that holds `at`, which lies in the text.
void text_t::look_at(position_t at) const {
    if (looked.holds(at))
        return;
    const auto block = std::prev(std::ranges::upper_bound(blocks, at, {}, &block_t::start));
    const auto piece =
        std::prev(std::ranges::upper_bound(block->pieces, at - block->start, {}, &piece_t::start));
    look_at_place({static_cast<size_t>(block - blocks.begin()),
                   static_cast<size_t>(piece - block->pieces.begin())});
}

std::string_view text_t::run(position_t from, position_t before) const {
    if (from >= before)
        return {};
    look_at(from);
    const uint32_t skipped = from - looked.start;
    return {looked.bytes + skipped, std::min(looked.length - skipped, before - from)};
}

// First `wanted` in [from, before), else `before`.
position_t text_t::find_byte(char wanted, position_t from, position_t before) const {
    while (from < before) {
        const std::string_view bytes = run(from, before);
        const size_t hit = bytes.find(wanted);
        if (hit != bytes.npos)
            return from + static_cast<position_t>(hit);
        from += static_cast<position_t>(bytes.size());
    }
    return before;
}

char text_t::at_elsewhere(position_t at) const {
    if (at >= marker)
        return at == marker ? end_marker : '\0';
    look_at(at);
    return looked.bytes[at - looked.start];
}

position_t text_t::end(position_t from) const {
    if (from >= marker)
        return marker;
    if (from > zero_free.to) {
        zero_free = {from, find_byte('\0', from, marker)};
    } else if (from < zero_free.from) {
        const position_t zero = find_byte('\0', from, zero_free.from);
        zero_free = {from, zero < zero_free.from ? zero : zero_free.to};
    }
    return zero_free.to;
}

// First `wanted` in `bytes`, else npos. Most hits are near, and what is fastest in many bytes takes
// longer to prepare itself than to read a few lines.
size_t text_t::find_in(std::string_view bytes, std::string_view wanted) {
    constexpr size_t near = 256;
    const size_t near_hit = bytes.substr(0, near + wanted.size()).find(wanted);
    if (near_hit != bytes.npos || bytes.size() <= near)
        return near_hit;
    const std::string_view rest = bytes.substr(near);
    const void *hit = memmem(rest.data(), rest.size(), wanted.data(), wanted.size());
    return hit ? static_cast<size_t>(static_cast<const char *>(hit) - bytes.data()) : bytes.npos;
}

position_t text_t::find(std::string_view wanted, position_t from, position_t before) const {
    if (from >= marker || before <= from)
        return nowhere;
    const position_t reach = further(before - 1, wanted.size(), end(from));
    if (wanted.size() == 1) {
        const position_t hit = find_byte(wanted.front(), from, reach);
        return hit < reach ? hit : nowhere;
    }
    while (from < reach) {
        const std::string_view bytes = run(from, reach);
        const size_t hit = find_in(bytes, wanted);
        if (hit != bytes.npos)
            return from + static_cast<position_t>(hit);
        const position_t seam = from + static_cast<position_t>(bytes.size());
        const position_t over_seam = find_over_seam(wanted, seam, from, reach);
        if (over_seam != nowhere)
            return over_seam;
        from = seam;
    }
    return nowhere;
}

// First `wanted`, of two bytes at least, in [first, before) that begins in front of `seam` and ends
// behind it.
position_t text_t::find_over_seam(std::string_view wanted, position_t seam, position_t first,
                                  position_t before) const {
    const auto overlap = static_cast<position_t>(wanted.size() - 1);
    if (seam >= before)
        return nowhere;
    const position_t from = seam - std::min(overlap, seam - first);
    const size_t hit = copy(from, further(seam, overlap, before) - from).find(wanted);
    return hit == wanted.npos ? nowhere : from + static_cast<position_t>(hit);
}

position_t text_t::newline_before(position_t before, position_t first) const {
    before = std::min(before, marker);
    while (before > first) {
        look_at(before - 1);
        const position_t from = std::max(first, looked.start);
        const size_t hit = run(from, before).rfind('\n');
        if (hit != std::string_view::npos)
            return from + static_cast<position_t>(hit);
        before = from;
    }
    return nowhere;
}

std::string text_t::copy(position_t from, uint32_t length) const {
    std::string bytes;
    const position_t behind = further(from, length, std::max(from, marker));
    for (std::string_view part; !(part = run(from, behind)).empty();) {
        bytes += part;
        from += static_cast<position_t>(part.size());
    }
    return bytes;
}

std::string text_t::line(position_t from, uint32_t length) const {
    if (from > marker)
        return {};
    const position_t last = end(from);
    const position_t newline = find_byte('\n', from, further(from, length, last));
    std::string bytes = copy(from, newline - from);
    if (newline == marker && bytes.size() < length)
        bytes += end_marker;
    return bytes;
}

// ---- Making a place for an edit ----

// Cuts a piece in two, without moving a byte of the file's memory.
void text_t::split(place_t place, uint32_t head_length) {
    auto &pieces = blocks[place.block].pieces;
    piece_t &head = pieces[place.piece];
    piece_t tail = {head.bytes + head_length,
                    head.length - head_length,
                    0,
                    head.room,
                    head.start + head_length,
                    nullptr};
    if (head.own) {
        tail.own.reset(new char[tail.length]);
        memcpy(tail.own.get(), tail.bytes, tail.length);
        tail.bytes = tail.own.get();
        tail.room = 0;
    }
    const uint32_t head_room = head.own ? head.room + tail.length : 0;
    pieces.insert(pieces.begin() + static_cast<ptrdiff_t>(place.piece) + 1, std::move(tail));
    pieces[place.piece].length = head_length;
    pieces[place.piece].room = head_room;
}

// Cuts a block that has grown too long in two. Returns where the piece stands then.
text_t::place_t text_t::split_block(place_t place) {
    auto &pieces = blocks[place.block].pieces;
    if (pieces.size() <= block_length)
        return place;
    const size_t half = pieces.size() / 2;
    const uint32_t half_start = pieces[half].start;
    const auto middle = pieces.begin() + static_cast<ptrdiff_t>(half);
    block_t second = {blocks[place.block].start + half_start,
                      {std::move_iterator(middle), std::move_iterator(pieces.end())}};
    for (piece_t &piece : second.pieces)
        piece.start -= half_start;
    blocks.insert(blocks.begin() + static_cast<ptrdiff_t>(place.block) + 1, std::move(second));
    auto &first = blocks[place.block].pieces;
    first.erase(first.begin() + static_cast<ptrdiff_t>(half), first.end());
    return place.piece < half ? place : place_t{place.block + 1, place.piece - half};
}

// Cuts a short piece that holds the byte at `offset` out of a long one. Cuts lie at multiples of
// the short length, and leave no piece shorter than that. Returns the piece.
text_t::place_t text_t::cut_short(place_t place, uint32_t offset) {
    const uint32_t length = at_place(place).length;
    if (length < 2 * short_length)
        return place;
    const uint32_t last_cut = length / short_length * short_length - short_length;
    const uint32_t cut = std::min(offset / short_length * short_length, last_cut);
    if (cut < last_cut)
        split(place, cut + short_length);
    if (cut > 0) {
        split(place, cut);
        place.piece++;
    }
    return split_block(place);
}

// The neighbour of a piece, or null.
text_t::piece_t *text_t::in_front_of(place_t place) {
    if (place.piece > 0)
        return &at_place({place.block, place.piece - 1});
    return place.block > 0 ? &blocks[place.block - 1].pieces.back() : nullptr;
}
text_t::piece_t *text_t::behind(place_t place) {
    if (place.piece + 1 < blocks[place.block].pieces.size())
        return &at_place({place.block, place.piece + 1});
    return place.block + 1 < blocks.size() ? &blocks[place.block + 1].pieces.front() : nullptr;
}

// Moves a piece down where that makes room for `length` bytes. Returns false where it does not.
bool text_t::move_into_room_in_front(place_t place, uint32_t length) {
    piece_t &piece = at_place(place);
    piece_t *front = in_front_of(place);
    const bool together =
        front && !front->own && !piece.own && front->memory_end() == piece.memory_begin();
    const uint32_t room = piece.room_in_front + (together ? front->room : 0);
    if (piece.room + room < length)
        return false;
    memmove(piece.bytes - room, piece.bytes, piece.length);
    piece.bytes -= room;
    piece.room += room;
    piece.room_in_front = 0;
    if (together)
        front->room = 0;
    return true;
}

// Hands the memory of a piece that leaves it to the next one, where they stand together.
void text_t::leave_memory(place_t place) {
    const piece_t &piece = at_place(place);
    piece_t *next = behind(place);
    if (next && !next->own && !piece.own && piece.memory_end() == next->memory_begin())
        next->room_in_front += piece.room_in_front + piece.length + piece.room;
}

// Makes room for `length` bytes behind a piece, and some more where that takes new memory.
void text_t::make_room(place_t place, uint32_t length) {
    piece_t &piece = at_place(place);
    if (piece.room >= length || move_into_room_in_front(place, length))
        return;
    const uint32_t room = length + short_length / 4;
    std::unique_ptr<char[]> memory(new char[piece.length + room]);
    if (piece.length > 0)
        memcpy(memory.get(), piece.bytes, piece.length);
    leave_memory(place);
    piece.own = std::move(memory);
    piece.bytes = piece.own.get();
    piece.room_in_front = 0;
    piece.room = room;
}

// ---- Edits ----

// Lets a piece grow by `by` bytes, modulo 2^32.
void text_t::resize(place_t place, uint32_t by) {
    auto &pieces = blocks[place.block].pieces;
    pieces[place.piece].length += by;
    for (size_t i = place.piece + 1; i < pieces.size(); i++)
        pieces[i].start += by;
    for (size_t i = place.block + 1; i < blocks.size(); i++)
        blocks[i].start += by;
    marker += by;
}

// Removes an empty piece.
void text_t::drop(place_t place) {
    leave_memory(place);
    auto &pieces = blocks[place.block].pieces;
    pieces.erase(pieces.begin() + static_cast<ptrdiff_t>(place.piece));
    if (pieces.empty())
        blocks.erase(blocks.begin() + static_cast<ptrdiff_t>(place.block));
}

// Erases at most `length` bytes of the piece at `from`. Returns how many.
uint32_t text_t::erase_in_piece(position_t from, uint32_t length) {
    look_at(from);
    const place_t place = cut_short(looked.place, from - looked.start);
    look_at_place(place);
    piece_t &piece = at_place(place);
    const uint32_t skipped = from - looked.start;
    length = std::min(length, piece.length - skipped);
    char *hole = piece.bytes + skipped;
    memmove(hole, hole + length, piece.length - skipped - length);
    piece.room += length;
    resize(place, -length);
    looked.length = piece.length;
    if (piece.length == 0)
        drop(place);
    return length;
}

void text_t::erase(position_t from, uint32_t length) {
    if (from >= marker)
        return;
    length = std::min(length, marker - from);
    for (uint32_t left = length; left > 0;)
        left -= erase_in_piece(from, left);
    if (from > zero_free.to)
        return;
    const position_t behind = from + length;
    zero_free.to = behind > zero_free.to ? find_byte('\0', from, marker) : zero_free.to - length;
    if (zero_free.from > from)
        zero_free.from -= std::min(length, zero_free.from - from);
}

bool text_t::has_room(position_t at, uint32_t length) const {
    return at <= marker && uint64_t{marker} + length + 2 <= most;
}

// Looks at the piece that an insertion at `at` goes into: at the end of the text the last one.
void text_t::look_for_insertion(position_t at) {
    if (at < marker) {
        look_at(at);
        return;
    }
    if (blocks.empty()) {
        blocks.push_back({.start = 0, .pieces = {}});
        blocks.front().pieces.push_back({});
    }
    look_at_place({blocks.size() - 1, blocks.back().pieces.size() - 1});
}

void text_t::insert_in_piece(position_t at, std::string_view inserted) {
    look_for_insertion(at);
    const place_t place = cut_short(looked.place, at - looked.start);
    const auto length = static_cast<uint32_t>(inserted.size());
    make_room(place, length);
    look_at_place(place);
    piece_t &piece = at_place(place);
    const uint32_t skipped = at - looked.start;
    char *hole = piece.bytes + skipped;
    memmove(hole + length, hole, piece.length - skipped);
    memcpy(hole, inserted.data(), length);
    piece.room -= length;
    resize(place, length);
    looked.length = piece.length;
}

void text_t::insert(position_t at, std::string_view inserted) {
    const auto length = static_cast<uint32_t>(inserted.size());
    for (uint32_t done = 0; done < length; done += short_length)
        insert_in_piece(at + done, inserted.substr(done, short_length));
    const size_t zero = inserted.find('\0');
    if (zero != inserted.npos) {
        zero_free.from = zero_free.to = at + static_cast<position_t>(zero);
    } else if (at <= zero_free.to) {
        zero_free.to += length;
        if (at < zero_free.from)
            zero_free.from += length;
    }
}

// What both have in common in length is overwritten, so that nothing moves for it.
void text_t::replace(position_t at, uint32_t length, std::string_view put) {
    while (length > 0 && !put.empty()) {
        look_at(at);
        const uint32_t skipped = at - looked.start;
        const uint32_t count =
            std::min({length, looked.length - skipped, static_cast<uint32_t>(put.size())});
        memcpy(looked.bytes + skipped, put.data(), count);
        at += count;
        length -= count;
        put.remove_prefix(count);
    }
    erase(at, length);
    insert(at, put);
}

} // namespace engine

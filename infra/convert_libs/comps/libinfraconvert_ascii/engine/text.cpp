// The text in pieces; text.h draws them.

#include "engine/text.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace engine {

namespace {

// `length` bytes further than `at`, but not beyond `limit`. Never forms the sum of both, which 32
// bits need not hold.
position further(position at, size_t length, position limit) {
    return at < limit ? at + static_cast<position>(std::min<size_t>(length, limit - at)) : limit;
}

} // namespace

text_t::text_t(uint32_t file_size, uint32_t capacity, uint32_t piece_length)
    : memory_of_file(new (std::nothrow) char[file_size]), most(capacity),
      short_length(piece_length) {}

void text_t::loaded(uint32_t size) {
    pieces.clear();
    edited = looked = 0;
    marker = size;
    if (size > 0)
        pieces.push_back({.bytes = memory_of_file.get(), .length = size, .room = 0, .distance = 0});
    zero_free = {0, find_byte('\0', 0, marker)};
}

// ---- Looking ----

// The piece that holds `at`, which lies in the text.
size_t text_t::piece_at(position at) const {
    if (holds(looked, at))
        return looked;
    size_t first = 0, behind = pieces.size();
    while (behind - first > 1) {
        const size_t middle = first + (behind - first) / 2;
        (start(middle) <= at ? first : behind) = middle;
    }
    return looked = first;
}

std::string_view text_t::run(position from, position before) const {
    if (from >= before)
        return {};
    const size_t i = piece_at(from);
    const uint32_t skipped = from - start(i);
    return {pieces[i].bytes + skipped, std::min(pieces[i].length - skipped, before - from)};
}

// First `wanted` in [from, before), else `before`.
position text_t::find_byte(char wanted, position from, position before) const {
    while (from < before) {
        const std::string_view bytes = run(from, before);
        const size_t hit = bytes.find(wanted);
        if (hit != bytes.npos)
            return from + static_cast<position>(hit);
        from += static_cast<position>(bytes.size());
    }
    return before;
}

char text_t::at_elsewhere(position at) const {
    if (at >= marker)
        return at == marker ? end_marker : '\0';
    const size_t i = piece_at(at);
    return pieces[i].bytes[at - start(i)];
}

position text_t::end(position from) const {
    if (from >= marker)
        return marker;
    if (from > zero_free.to) {
        zero_free = {from, find_byte('\0', from, marker)};
    } else if (from < zero_free.from) {
        const position zero = find_byte('\0', from, zero_free.from);
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

position text_t::find(std::string_view wanted, position from, position before) const {
    if (from >= marker || before <= from)
        return nowhere;
    const position reach = further(before - 1, wanted.size(), end(from));
    while (from < reach) {
        const std::string_view bytes = run(from, reach);
        const size_t hit = find_in(bytes, wanted);
        if (hit != bytes.npos)
            return from + static_cast<position>(hit);
        const position seam = from + static_cast<position>(bytes.size());
        const position over_seam = find_over_seam(wanted, seam, from, reach);
        if (over_seam != nowhere)
            return over_seam;
        from = seam;
    }
    return nowhere;
}

// First `wanted` in [first, before) that begins in front of `seam` and ends behind it.
position text_t::find_over_seam(std::string_view wanted, position seam, position first,
                                position before) const {
    const auto overlap = static_cast<position>(wanted.size() - 1);
    if (overlap == 0 || seam >= before)
        return nowhere;
    const position from = seam - std::min(overlap, seam - first);
    const size_t hit = copy(from, further(seam, overlap, before) - from).find(wanted);
    return hit == wanted.npos ? nowhere : from + static_cast<position>(hit);
}

position text_t::newline_before(position before, position first) const {
    before = std::min(before, marker);
    while (before > first) {
        const position from = std::max(first, start(piece_at(before - 1)));
        const size_t hit = run(from, before).rfind('\n');
        if (hit != std::string_view::npos)
            return from + static_cast<position>(hit);
        before = from;
    }
    return nowhere;
}

std::string text_t::copy(position from, uint32_t length) const {
    std::string bytes;
    const position behind = further(from, length, std::max(from, marker));
    for (std::string_view part; !(part = run(from, behind)).empty();) {
        bytes += part;
        from += static_cast<position>(part.size());
    }
    return bytes;
}

std::string text_t::line(position from, uint32_t length) const {
    if (from > marker)
        return {};
    const position last = end(from);
    const position newline = find_byte('\n', from, further(from, length, last));
    std::string bytes = copy(from, newline - from);
    if (newline == marker && bytes.size() < length)
        bytes += end_marker;
    return bytes;
}

// ---- Making a place for an edit ----

// Turns the counting of the pieces between the last edit and this one round.
void text_t::make_edited(size_t piece) {
    while (edited < piece)
        count_from_other_side(++edited);
    while (edited > piece)
        count_from_other_side(edited--);
}

// Cuts the piece of the edit in two.
void text_t::split(size_t piece, uint32_t head_length) {
    piece_t &head = pieces[piece];
    piece_t tail = {.bytes = head.bytes + head_length,
                    .length = head.length - head_length,
                    .room = head.room,
                    .distance = marker - start(piece) - head_length};
    if (head.own) {
        tail.own.reset(new char[tail.length]);
        memcpy(tail.own.get(), tail.bytes, tail.length);
        tail.bytes = tail.own.get();
        tail.room = 0;
    }
    const uint32_t head_room = head.own ? head.room + tail.length : 0;
    pieces.insert(pieces.begin() + static_cast<ptrdiff_t>(piece) + 1, std::move(tail));
    pieces[piece].length = head_length;
    pieces[piece].room = head_room;
}

// Cuts a short piece that holds `at` out of a long one. Cuts lie at multiples of the short length,
// and leave no piece shorter than that. Returns the piece, as the one of the edit.
size_t text_t::make_short(size_t piece, position at) {
    make_edited(piece);
    const uint32_t length = pieces[piece].length;
    if (length < 2 * short_length)
        return piece;
    const uint32_t last_cut = length / short_length * short_length - short_length;
    const uint32_t cut = std::min((at - start(piece)) / short_length * short_length, last_cut);
    if (cut < last_cut)
        split(piece, cut + short_length);
    if (cut == 0)
        return piece;
    split(piece, cut);
    make_edited(piece + 1);
    return piece + 1;
}

// Gives a piece memory of its own, with room for `length` bytes and some more.
void text_t::make_room(piece_t &piece, uint32_t length) {
    const uint32_t room = length + short_length / 4;
    std::unique_ptr<char[]> memory(new char[piece.length + room]);
    if (piece.length > 0)
        memcpy(memory.get(), piece.bytes, piece.length);
    piece.own = std::move(memory);
    piece.bytes = piece.own.get();
    piece.room = room;
}

// Removes the piece of the edit; the next one becomes that.
void text_t::drop_edited() {
    pieces.erase(pieces.begin() + static_cast<ptrdiff_t>(edited));
    if (edited < pieces.size())
        count_from_other_side(edited);
    else if (edited > 0)
        edited--;
}

// ---- Edits ----

// Erases at most `length` bytes of the piece at `from`. Returns how many.
uint32_t text_t::erase_in_piece(position from, uint32_t length) {
    const size_t i = make_short(piece_at(from), from);
    piece_t &piece = pieces[i];
    const uint32_t skipped = from - start(i);
    length = std::min(length, piece.length - skipped);
    char *hole = piece.bytes + skipped;
    memmove(hole, hole + length, piece.length - skipped - length);
    piece.length -= length;
    piece.room += length;
    marker -= length;
    if (piece.length == 0)
        drop_edited();
    return length;
}

void text_t::erase(position from, uint32_t length) {
    if (from >= marker)
        return;
    length = std::min(length, marker - from);
    for (uint32_t left = length; left > 0;)
        left -= erase_in_piece(from, left);
    if (from > zero_free.to)
        return;
    const position behind = from + length;
    zero_free.to = behind > zero_free.to ? find_byte('\0', from, marker) : zero_free.to - length;
    if (zero_free.from > from)
        zero_free.from -= std::min(length, zero_free.from - from);
}

bool text_t::has_room(position at, uint32_t length) const {
    return at <= marker && uint64_t{marker} + length + 2 <= most;
}

void text_t::insert_in_piece(position at, std::string_view inserted) {
    if (pieces.empty())
        pieces.push_back({.bytes = nullptr, .length = 0, .room = 0, .distance = 0});
    const size_t i = make_short(at < marker ? piece_at(at) : pieces.size() - 1, at);
    const auto length = static_cast<uint32_t>(inserted.size());
    piece_t &piece = pieces[i];
    if (piece.room < length)
        make_room(piece, length);
    char *hole = piece.bytes + (at - start(i));
    memmove(hole + length, hole, piece.length - (at - start(i)));
    memcpy(hole, inserted.data(), length);
    piece.length += length;
    piece.room -= length;
    marker += length;
}

void text_t::insert(position at, std::string_view inserted) {
    const auto length = static_cast<uint32_t>(inserted.size());
    for (uint32_t done = 0; done < length; done += short_length)
        insert_in_piece(at + done, inserted.substr(done, short_length));
    const size_t zero = inserted.find('\0');
    if (zero != inserted.npos) {
        zero_free.from = zero_free.to = at + static_cast<position>(zero);
    } else if (at <= zero_free.to) {
        zero_free.to += length;
        if (at < zero_free.from)
            zero_free.from += length;
    }
}

// What both have in common in length is overwritten, so that nothing moves for it.
void text_t::replace(position at, uint32_t length, std::string_view put) {
    while (length > 0 && !put.empty()) {
        const size_t i = piece_at(at);
        const uint32_t skipped = at - start(i);
        const uint32_t count =
            std::min({length, pieces[i].length - skipped, static_cast<uint32_t>(put.size())});
        memcpy(pieces[i].bytes + skipped, put.data(), count);
        at += count;
        length -= count;
        put.remove_prefix(count);
    }
    erase(at, length);
    insert(at, put);
}

} // namespace engine

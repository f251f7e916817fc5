// The text as one run of bytes. An edit moves the bytes behind it, up to the marker; the headroom
// is never touched before it is needed, so a large allocation costs nothing until then.

#include "engine/text.h"

#include <algorithm>
#include <cstring>

namespace engine {

text_t::text_t(uint32_t capacity)
    : bytes(static_cast<char *>(calloc(capacity, 1))), allocated(capacity) {}

void text_t::loaded(uint32_t size) {
    marker = size;
    bytes[marker] = end_marker;
    has_zero = memchr(bytes.get(), 0, size) != nullptr;
}

char text_t::at(position at) const { return at <= marker ? bytes[at] : '\0'; }

position text_t::end(position from) const {
    if (!has_zero || from >= marker)
        return marker;
    const void *zero = memchr(&bytes[from], 0, marker - from);
    return zero ? static_cast<position>(static_cast<const char *>(zero) - bytes.get()) : marker;
}

position text_t::find(std::string_view wanted, position from, position before) const {
    if (from >= marker || before <= from)
        return nowhere;
    const size_t reach = std::min<size_t>(end(from), size_t{before} - 1 + wanted.size());
    const void *hit = memmem(&bytes[from], reach - from, wanted.data(), wanted.size());
    return hit ? static_cast<position>(static_cast<const char *>(hit) - bytes.get()) : nowhere;
}

position text_t::newline_before(position before, position first) const {
    before = std::min(before, marker);
    if (before <= first)
        return nowhere;
    const void *hit = memrchr(&bytes[first], '\n', before - first);
    return hit ? static_cast<position>(static_cast<const char *>(hit) - bytes.get()) : nowhere;
}

std::string text_t::copy(position from, uint32_t length) const {
    if (from >= marker)
        return {};
    return {&bytes[from], std::min(length, marker - from)};
}

std::string text_t::line(position from, uint32_t length) const {
    if (from > marker)
        return {};
    const char *first = &bytes[from];
    return {first, std::min(size_t{length}, static_cast<size_t>(strchrnul(first, '\n') - first))};
}

std::string_view text_t::saved_bytes() const {
    const char *first = bytes.get();
    return {first, static_cast<size_t>(static_cast<const char *>(
                                           memchr(first, end_marker & 0xFF, size_t{marker} + 1)) -
                                       first)};
}

void text_t::erase(position from, uint32_t length) {
    if (from >= marker)
        return;
    length = std::min(length, marker - from);
    memmove(&bytes[from], &bytes[from + length], marker - from - length + 1);
    marker -= length;
    memset(&bytes[marker + 1], 0, length);
}

bool text_t::has_room(position at, uint32_t length) const {
    return at <= marker && size_t{marker} + length + 2 <= allocated;
}

void text_t::insert(position at, std::string_view inserted) {
    memmove(&bytes[at + inserted.size()], &bytes[at], marker - at + 1);
    memcpy(&bytes[at], inserted.data(), inserted.size());
    marker += static_cast<uint32_t>(inserted.size());
    has_zero = has_zero || inserted.find('\0') != inserted.npos;
}

} // namespace engine

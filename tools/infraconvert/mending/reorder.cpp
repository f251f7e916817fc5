// The stanzas of an original in another order.

#include "mending/respell.h"

#include "meaning/reading.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace infraconvert::mending {

using namespace meaning;

namespace {

struct piece_t {
    std::string header; // by its words
    std::string text;   // with its lines
    int rank = 0;
};

int rank_of(const std::string &header) {
    const words_t words = split_words(header);
    return words[0] == "class-map"    ? 2
           : words[0] == "policy-map" ? 3
           : words[0] == "interface"  ? 4
                                      : 1;
}

std::vector<piece_t> pieces_of(std::string_view text) {
    std::vector<piece_t> pieces = {{}};
    while (!text.empty()) {
        const size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        const std::string_view line = text.substr(0, length);
        text.remove_prefix(length);
        if (std::isalpha(static_cast<unsigned char>(line[0]))) {
            const std::string header = joined(split_words(line.substr(0, line.find('\n'))));
            pieces.push_back({header, "", rank_of(header)});
        }
        pieces.back().text += line;
        if (!line.ends_with('\n'))
            pieces.back().text += '\n';
    }
    return pieces;
}

// The lines of a later stanza of the same map, below those of the first.
bool merged(std::vector<piece_t> &pieces, const piece_t &piece) {
    if (piece.rank != 2 && piece.rank != 3)
        return false;
    for (piece_t &known : pieces) {
        if (known.header != piece.header)
            continue;
        known.text += piece.text.substr(piece.text.find('\n') + 1);
        return true;
    }
    return false;
}

} // namespace

respelling_t in_written_order(std::string_view text) {
    std::vector<piece_t> pieces;
    for (piece_t &piece : pieces_of(text)) {
        if (!merged(pieces, piece))
            pieces.push_back(std::move(piece));
    }
    std::stable_sort(pieces.begin(), pieces.end(),
                     [](const piece_t &a, const piece_t &b) { return a.rank < b.rank; });
    respelling_t result = {"",
                           "class-maps and policy-maps in this order, behind everything else and "
                           "ahead of the interfaces"};
    for (const piece_t &piece : pieces)
        result.text += piece.text;
    return result;
}

} // namespace infraconvert::mending

// Configurations with their secrets out of sight: passwords, keys, community strings, and whatever
// else may be one. Only what is known to be harmless shows (harmless_table.h); "<masked>" stands
// for the rest of a line, whatever it is and however long, so that nothing can be learnt from it.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace infraconvert {

constexpr std::string_view masked_mark = "<masked>";

// Called with each line and its words: the first `shown` of them show, the others do not.
using shown_visit_t = std::function<void(std::string_view line,
                                         std::span<const std::string_view> words, size_t shown)>;

// The text with the secrets of its lines masked; it has as many lines. It must be a whole
// configuration: what a line may show depends on what stands above it.
std::string masked_text(std::string_view text, const shown_visit_t &visit = {});

} // namespace infraconvert

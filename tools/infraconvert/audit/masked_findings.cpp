#include "audit/masked_findings.h"

#include "base/lines.h"
#include "secrets/masked_text.h"

namespace infraconvert {

namespace {

// Each line as the masked text has it: it alone tells what shows of it.
void mask_lines(std::vector<evidence_t> &evidence, const lines_t &masked) {
    for (evidence_t &line : evidence) {
        const bool known = line.number > 0 && line.number <= masked.size();
        line.text = known ? without_newline(masked[line.number - 1]) : masked_mark;
    }
}

// Lines that are to be typed, or of a patch: what is behind "-" or "+".
void mask_fix(fix_text_t &fix, const mask_t &mask) {
    const size_t mark = fix.time == fix_time_t::before ? 1 : 0;
    std::string text;
    for (const std::string &line : fix.lines)
        text += line.substr(mark) + '\n';
    const std::string masked = masked_text(text);
    const lines_t lines = split_lines(masked);
    for (size_t i = 0; i < fix.lines.size(); i++)
        fix.lines[i] = fix.lines[i].substr(0, mark) + std::string(without_newline(lines[i]));
    for (std::string &words : fix.restores)
        words = mask.message(words);
    for (replacement_t &replacement : fix.replacements)
        replacement.text = masked_text(replacement.text);
}

void mask_way(way_t &way, const converted_t &there) {
    mask_findings(way.findings, there);
    const mask_t &mask = mask_of(there);
    for (std::string *words : {&way.failure, &way.back_failure})
        *words = mask.message(*words);
    for (std::string &words : way.unexplained)
        words = mask.message(words);
    const shared_text_t original = there.masked_texts->masked(there.original);
    for (finding_t &finding : way.left_behind) {
        finding.detail = mask.message(finding.detail);
        finding.place = mask.message(finding.place);
        mask_lines(finding.before, split_lines(*original));
        mask_lines(finding.after, {});
    }
}

} // namespace

void mask_ways(std::vector<way_t> &ways, const shared_text_t &original) {
    const auto texts = std::make_shared<masked_texts_t>();
    for (way_t &way : ways) {
        converted_t there = {.original = original, .result = way.result};
        there.masked_texts = texts;
        mask_way(way, there);
    }
}

void mask_findings(std::vector<finding_t> &findings, const converted_t &conversion) {
    const mask_t &mask = mask_of(conversion);
    const shared_text_t original = conversion.masked_texts->masked(conversion.original);
    const shared_text_t result = conversion.masked_texts->masked(conversion.result);
    const lines_t before = split_lines(*original), after = split_lines(*result);
    const stanzas_t stanzas_before(split_lines(*conversion.original));
    const stanzas_t stanzas_after(split_lines(*conversion.result));
    for (finding_t &finding : findings) {
        finding.detail = mask.message(finding.detail);
        finding.by_hand = mask.message(finding.by_hand);
        finding.place = place_of(finding, {stanzas_before, before}, {stanzas_after, after});
        mask_lines(finding.before, before);
        mask_lines(finding.after, after);
        for (std::vector<fix_text_t> *fixes : {&finding.fixes, &finding.choices})
            for (fix_text_t &fix : *fixes)
                mask_fix(fix, mask);
    }
}

} // namespace infraconvert

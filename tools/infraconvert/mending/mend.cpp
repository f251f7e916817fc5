#include "mending/mend.h"

#include "mending/after.h"
#include "mending/respell.h"

#include <algorithm>
#include <tuple>

namespace infraconvert::mending {

using meaning::difference_t;

namespace {

// An original as it could be written, and what comes of it.
struct way_t {
    std::vector<fix_t> fixes; // the edits
    std::string original, converted;
    after_t after;

    // Errors first, then what has to be changed.
    auto cost() const {
        size_t lines = 0;
        for (const fix_t &fix : after.fixes)
            lines += lines_of(fix.commands).size();
        return std::tuple(after.result().wrong.size(), fixes.size() + lines);
    }
};

class search_t {
  public:
    explicit search_t(const mending_request_t &asked)
        : request(asked), original(asked.original, asked.route.front()) {}

    mended_t run() {
        if (request.result)
            add({}, std::string(request.original), std::string(*request.result));
        if (!is_done() && request.convert)
            try_edits();
        const auto best =
            std::min_element(ways.begin(), ways.end(),
                             [](const auto &a, const auto &b) { return a.cost() < b.cost(); });
        mended_t result = best == ways.end() ? mended_t() : mended(*best);
        result.refusal = refusal;
        return result;
    }

  private:
    void add(std::vector<fix_t> edits, std::string edited, const std::string &converted) {
        ways.push_back(
            {std::move(edits), std::move(edited), converted, {request, original, converted, work}});
        ways.back().after.run();
    }

    bool is_done() const {
        return std::any_of(ways.begin(), ways.end(),
                           [](const way_t &way) { return way.after.result().wrong.empty(); });
    }

    // Each way to write it by itself, then one after the other.
    void try_edits() {
        using respell_t = respelling_t (*)(std::string_view, std::string_view);
        constexpr respell_t ways_to_write[] = {
            with_fabric_order, in_written_form, with_plain_names, without_descriptions,
            [](std::string_view text, std::string_view) { return in_written_order(text); }};
        const std::string_view release = request.route.front();
        respelling_t all = {std::string(request.original), ""};
        size_t used = 0;
        for (const respell_t respell : ways_to_write) {
            if (is_done() || work.is_too_much())
                return;
            try_edit(respell(request.original, release));
            const respelling_t next = respell(all.text, release);
            if (next.text == all.text || !means_the_same(next.text))
                continue;
            used++;
            all = {next.text, all.words + (all.words.empty() ? "" : "; ") + next.words};
        }
        if (used > 1 && !is_done())
            try_edit(all);
        for (const std::string &text : {std::string(request.original), all.text}) {
            if (request.result || is_done())
                return;
            respelling_t idle = without_idle_lines(text, release);
            if (idle.text != text)
                try_edit({idle.text,
                          text == request.original ? idle.words : all.words + "; " + idle.words},
                         true);
        }
    }

    // An edit must mean nothing: the same configuration in other words.
    bool means_the_same(const std::string &edited) const {
        const std::string_view release = request.route.front();
        const std::string_view same[] = {release, release};
        return !meaning::has_errors(original.compare(edited, same));
    }

    // What `comes_back` with the lines after the conversion may go before it.
    void try_edit(const respelling_t &edited, bool comes_back = false) {
        if (edited.text == request.original || !(comes_back || means_the_same(edited.text)))
            return;
        work.add(edited.text);
        const attempt_t attempt = request.convert(edited.text);
        if (!attempt.text) {
            refusal = attempt.refusal;
            return;
        }
        const std::string &converted = *attempt.text;
        const judged_t now(original, converted, request.route);
        fix_t fix = {.place = fix_place_t::before,
                     .codes = {},
                     .mends = {},
                     .edited = edited.text,
                     .words = edited.words};
        if (!request.result) {
            fix.codes.insert("IC090");
        } else {
            const judged_t old(original, std::string(*request.result), request.route);
            for (const difference_t &difference : old.differences) {
                if (!wants_lines(difference) || any_of(parts_of(difference), now.wrong))
                    continue;
                fix.codes.insert(difference.code.name());
                fix.mends.push_back(difference);
            }
            const bool asked = request.codes.empty() || any_of(fix.codes, request.codes);
            if (fix.mends.empty() || !asked || !includes(old.wrong, now.wrong))
                return;
        }
        add({fix}, edited.text, converted);
        if (comes_back && !is_done())
            ways.pop_back();
    }

    static mended_t mended(way_t &way) {
        mended_t result = {.fixes = way.fixes,
                           .by_hand = way.after.left(),
                           .original = way.original,
                           .converted = way.converted,
                           .result = way.after.result().text};
        result.fixes.insert(result.fixes.end(), way.after.fixes.begin(), way.after.fixes.end());
        return result;
    }

    const mending_request_t &request;
    const meaning::original_t original;
    std::vector<way_t> ways;
    std::string refusal;
    work_t work;
};

} // namespace

bool wants_lines(const finding_kind_t &kind) {
    return kind.severity == severity_t::error || &kind == &finding_code_t("IC054").kind();
}

mended_t mend(const mending_request_t &request) { return search_t(request).run(); }

} // namespace infraconvert::mending

#include "window/apply.h"

#include "base/errors.h"
#include "base/files.h"
#include "base/interruption.h"
#include "base/locked_file.h"
#include "base/outputs.h"
#include "base/quoting.h"
#include "window/crew.h"

#include <algorithm>
#include <csignal>

namespace infraconvert {

namespace {

using state_t = standing_state_t;

constexpr const char *names[] = {"ready", "unchanged", "refused",  "failed", "converted",
                                 "torn",  "stale",     "unusable", "blocked"};

std::string listed(const std::vector<std::string> &words) {
    std::string text;
    for (const std::string &word : words)
        text += (text.empty() ? "" : ", ") + word;
    return text;
}

// True when each byte is one of either text, or a zero where a longer one was to come, as a write
// from the one to the other that was cut short leaves it.
bool is_mixture(const std::string &text, const std::string &one, const std::string &other) {
    if (text.size() < std::min(one.size(), other.size()) ||
        text.size() > std::max(one.size(), other.size()))
        return false;
    for (size_t i = 0; i < text.size(); i++) {
        const bool known =
            (i < one.size() && text[i] == one[i]) || (i < other.size() && text[i] == other[i]);
        if (!known)
            return false;
    }
    return true;
}

// Removes what a save that was killed may have left beside the file.
void remove_left_beside(const std::string &file) {
    engine::replace_file_t save;
    save.begin(file.c_str());
}

// Replaces a file that is still what was read of it.
class replacement_t {
  public:
    replacement_t(const std::string &replaced, const std::string &bytes)
        : file(replaced), text(bytes), lock(replaced) {
        lock.look_again(text);
    }

    void write(const std::string &now) const {
        const auto look = [&] {
            lock.look_again(text);
            return true;
        };
        const auto is_expected = [&](int old) { return lock.is(old, text); };
        write_whole(file, now, {.before_first_byte = look, .is_expected = is_expected});
    }

  private:
    const std::string &file, &text;
    const locked_file_t lock;
};

// One configuration, with what the plan, the folder and the journal say of it.
class one_t {
  public:
    one_t(const window_t &all, const last_deeds_t &before, const planned_t &which)
        : window(all), folder(all.folder), deeds(before), planned(which),
          file(folder.file(which.path)) {}

    state_t look() {
        if (planned.input_digest.empty())
            return state_as_of_then();
        text = *read_configuration(file);
        return state_of(standing());
    }

    state_t apply(journal_t &journal) {
        state_t state = look();
        if (state.standing == standing_t::ready || state.standing == standing_t::torn)
            return convert_now(journal, state.standing == standing_t::torn);
        if (state.standing == standing_t::converted && deeds.is_open(planned)) {
            remove_left_beside(file);
            journal.add(deed_t::converted, planned);
        }
        return state;
    }

    state_t undo(journal_t &journal) {
        if (!deeds.stands(planned))
            return look_at_others();
        state_t state = look_for_undo();
        if (state.standing == standing_t::converted && !lack_of_original().empty())
            return state;
        if (state.standing == standing_t::converted || state.standing == standing_t::torn)
            return put_back(journal);
        if (state.standing == standing_t::ready) {
            remove_left_beside(file);
            journal.add(deed_t::undone, planned);
        }
        return state;
    }

  private:
    standing_t standing() const {
        const std::string digest = folder.digest(text);
        if (digest == planned.input_digest)
            return state_as_planned(planned).standing;
        if (!planned.result_digest.empty() && digest == planned.result_digest)
            return standing_t::converted;
        return deeds.is_open(planned) && is_torn() ? standing_t::torn : standing_t::stale;
    }

    state_t state_of(standing_t standing) const {
        switch (standing) {
        case standing_t::torn:
            return {standing, false,
                    "its writing was interrupted; convert --plan completes it, undo puts the "
                    "original back",
                    exit_unusable};
        case standing_t::stale:
            return {standing, false,
                    (deeds.stands(planned) && !deeds.is_open(planned)
                         ? "has changed since it was converted; untouched"
                         : "has changed since the plan was made; untouched") +
                        where_the_original_is(),
                    exit_unusable};
        case standing_t::converted:
            return state_of_converted();
        default:
            return state_as_planned(planned);
        }
    }

    // What there is to say besides is about the way back.
    state_t state_of_converted() const {
        const int status = planned.failed_services.empty() ? exit_done : exit_failed;
        if (!deeds.stands(planned))
            return {standing_t::converted, false, not_by_this_plan, status};
        if (const std::string lack = lack_of_original(); !lack.empty())
            return {standing_t::converted, false, lack + ", so undo cannot put it back",
                    worse(status, exit_unusable)};
        return {standing_t::converted, false, "", status};
    }

    // Nothing is known of the file but why nothing was known when the plan was made.
    state_t state_as_of_then() const {
        state_t state = state_as_planned(planned);
        state.why = "when the plan was made: " + planned.problem + "; save another plan for it";
        return state;
    }

    state_t look_for_undo() try { return look(); } catch (const input_error_t &e) {
        throw input_error_t(e.what() + where_the_original_is());
    }

    // What the plan has not converted is none of undo's business.
    state_t look_at_others() try {
        const standing_t standing = look().standing;
        if (standing != standing_t::converted)
            return {standing, false, "", exit_done};
        return {standing, false, std::string(not_by_this_plan) + "; untouched", exit_unusable};
    } catch (const input_error_t &) {
        return {standing_t::unusable, false, "", exit_done};
    }

    // Empty: it is there, and is what it was.
    std::string lack_of_original() const try {
        folder.read_original(planned.input_digest);
        return "";
    } catch (const input_error_t &e) {
        return e.what();
    }

    std::string where_the_original_is() const {
        if (!deeds.stands(planned))
            return "";
        const std::string lack = lack_of_original();
        return "; " + (lack.empty()
                           ? "its original is " + quoted_name(folder.original(planned.input_digest))
                           : lack);
    }

    std::string result_of(const std::string &input) const {
        std::string result = window.convert(planned, input);
        if (folder.digest(result) != planned.result_digest)
            throw conversion_error_t("the conversion gives another result than when the plan was "
                                     "made, so the converters are others; untouched");
        return result;
    }

    bool is_torn() const try {
        const std::string before = folder.read_original(planned.input_digest);
        return is_mixture(text, before, result_of(before));
    } catch (const input_error_t &) {
        return false;
    } catch (const conversion_error_t &) {
        return false;
    }

    // From the first line in the journal on signals wait until the last.
    state_t convert_now(journal_t &journal, bool torn) const {
        const std::string before = torn ? folder.read_original(planned.input_digest) : text;
        const std::string result = result_of(before);
        const replacement_t replacement(file, text);
        uninterrupted_t::last_call();
        const uninterrupted_t working;
        journal.add(deed_t::begin, planned);
        folder.keep_original(planned.input_digest, before);
        replacement.write(result);
        const int status = planned.failed_services.empty() ? exit_done : exit_failed;
        return done(journal, deed_t::converted, {standing_t::converted, false, "", status});
    }

    state_t put_back(journal_t &journal) const {
        const std::string before = folder.read_original(planned.input_digest);
        const replacement_t replacement(file, text);
        uninterrupted_t::last_call();
        const uninterrupted_t working;
        journal.add(deed_t::undoing, planned);
        replacement.write(before);
        return done(journal, deed_t::undone, {standing_t::ready, false, "", exit_done});
    }

    // The file counts, whatever becomes of the last line about it.
    state_t done(journal_t &journal, deed_t deed, state_t state) const try {
        state.done = true;
        journal.add(deed, planned);
        return state;
    } catch (const command_error_t &e) {
        return {state.standing, true, e.what(), e.exit_status};
    }

    static constexpr const char *not_by_this_plan =
        "is what the plan makes of it, but was not converted with this plan, which has no original "
        "of it";

    const window_t &window;
    const plan_folder_t &folder;
    const last_deeds_t &deeds;
    const planned_t &planned;
    const std::string file;
    std::string text; // of the file
};

standing_t standing_of_error(int exit_status) {
    return exit_status == exit_failed    ? standing_t::failed
           : exit_status == exit_trouble ? standing_t::blocked
                                         : standing_t::unusable;
}

// Whatever is wrong with one configuration is a line of the result, and never the end.
template<typename work_t>
void each(const window_t &window, const last_deeds_t &deeds, const work_t &work) {
    const auto &all = window.plan.configurations;
    const auto one = [&](size_t index) -> state_t {
        try {
            uninterrupted_t::last_call();
            one_t at_hand(window, deeds, all[index]);
            return work(at_hand);
        } catch (const command_error_t &e) {
            return {standing_of_error(e.exit_status), false, e.what(), e.exit_status};
        } catch (const std::exception &e) { // such as no memory
            return {standing_t::blocked, false, e.what(), exit_trouble};
        }
    };
    make_in_order<state_t>(all.size(), window.jobs, one, window.tell);
}

} // namespace

const char *standing_name(standing_t standing) { return names[static_cast<size_t>(standing)]; }

standing_state_t state_as_planned(const planned_t &planned) {
    switch (planned.state) {
    case planned_state_t::unchanged:
        return {standing_t::unchanged, false, "", exit_done};
    case planned_state_t::refused:
        return {standing_t::refused, false, "would lose something: " + listed(planned.refused),
                exit_findings};
    case planned_state_t::failed:
        return {standing_t::failed, false,
                "does not convert: " + listed(planned.failed_services) +
                    (planned.failed_services.size() == 1 ? " fails" : " fail") +
                    " (infraconvert audit shows why)",
                exit_failed};
    case planned_state_t::unusable:
        return {standing_t::unusable, false, planned.problem, exit_unusable};
    case planned_state_t::blocked:
        return {standing_t::blocked, false, planned.problem, exit_trouble};
    default:
        return {standing_t::ready, false, "", exit_done};
    }
}

void look_at(const window_t &window) {
    const last_deeds_t deeds(window.folder);
    each(window, deeds, [](one_t &one) { return one.look(); });
}

// Nobody who stops reading what is told may end a run in the midst of a file.
void apply(const window_t &window, journal_t &journal) {
    signal(SIGPIPE, SIG_IGN);
    window.folder.make_originals();
    each(window, journal.before(), [&](one_t &one) { return one.apply(journal); });
}

void undo(const window_t &window, journal_t &journal) {
    signal(SIGPIPE, SIG_IGN);
    each(window, journal.before(), [&](one_t &one) { return one.undo(journal); });
}

} // namespace infraconvert

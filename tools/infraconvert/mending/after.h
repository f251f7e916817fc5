// Lines after a conversion: candidates are tried one after the other, and most of them thrown away.
#pragma once

#include "mending/judged.h"
#include "mending/mend.h"
#include "mending/restore.h"

#include <memory>

namespace infraconvert::mending {

class after_t {
  public:
    // `work` is that of all ways together. Original and request must outlive the object.
    after_t(const mending_request_t &asked, const meaning::original_t &of,
            const std::string &converted, work_t &work);

    void run();

    // What has come of it so far.
    const judged_t &result() const { return *current; }
    std::vector<by_hand_t> left();

    std::vector<fix_t> fixes;

  private:
    using judged_ptr = std::unique_ptr<const judged_t>;
    judged_ptr judged(const std::string &text);
    std::vector<candidate_t> candidates(const meaning::difference_t &difference) const;
    bool is_asked(const meaning::difference_t &difference) const;

    bool one_alone();
    bool several_together();
    bool all_anew();
    bool try_together(const std::vector<const meaning::difference_t *> &parts);
    // Lines that are proved, and what they make.
    struct proved_t {
        commands_t commands;
        judged_ptr reached;
    };
    bool try_all(const meaning::difference_t &difference, const differences_t &mended);
    std::vector<proved_t> repairs(const meaning::difference_t &difference,
                                  const differences_t &mended);
    bool is_another(const judged_t &one, const judged_t &other) const;
    std::optional<proved_t> prove(commands_t commands, const differences_t &all, bool some = false);
    bool makes_orphans(const meaning::model_t &model) const;
    void take(proved_t proved);
    commands_t fewest(const commands_t &commands, judged_ptr &reached);
    std::string why_not(const meaning::difference_t &difference) const;

    const mending_request_t &request;
    const meaning::original_t &original;
    work_t &work;
    judged_ptr current;
    parts_t undecided; // differences with several repairs
};

} // namespace infraconvert::mending

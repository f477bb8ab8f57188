// Selections that a core owns, and the runs behind any selection.
#pragma once

#include "c4d_baseselect.h"

#include <span>
#include <vector>

/// A selection as a member. Plug-ins get the address of `select` and never free it.
struct SelectionRecord {
    using Run = BaseSelect::Run;

    static std::span<const Run> RunsOf(const BaseSelect& select) { return select.runs; }
    /// False, with nothing changed, unless the runs ascend without overlapping. Runs that touch are joined.
    static bool Assign(BaseSelect& select, std::span<const Run> ascending);

    BaseSelect select;

private:
    friend class BaseSelect;

    // Takes over runs that may touch or overlap, but ascend by their first members.
    static void Adopt(BaseSelect& select, const std::vector<Run>& ascending);
};

// Who answers the module's questions where nobody is asked.
#pragma once

#include "core/dialogs.h"

namespace verdanth {

class Console;

/// Says yes where the answer is yes or no: materials of the document are used again, so that many equal plants have one
/// set, and new ones take the place of the old. What is only told goes to the console.
class SessionAnswers final : public host::Dialogs {
public:
    explicit SessionAnswers(Console& told) : console(&told) {}

    GEMB_R message(const std::string& text, GEMB flags) override;
    bool chooseFile(const host::FileQuestion&, std::string&) override { return false; }

private:
    Console* console;
};

} // namespace verdanth

// The questions that the host asks a person: message boxes and file dialogs.
//
// A front end answers them; tests script the answers. Without anybody to ask, the host prints the question and takes
// the answer that changes nothing.
#pragma once

#include "c4d.h"

#include <string>

namespace host {

/// What a file dialog shows. Texts are UTF-8, paths as the host spells them.
struct FileQuestion {
    FILESELECTTYPE type = FILESELECTTYPE_ANYTHING;
    FILESELECT mode = FILESELECT_LOAD;
    std::string title;
    std::string suffix; // forced on what is chosen; may be empty
    std::string start;  // where the dialog begins
};

class Dialogs {
public:
    virtual ~Dialogs() = default;

    /// Shows a message box. Main thread.
    virtual GEMB_R message(const std::string& text, GEMB flags) = 0;
    /// Lets the user choose a file or folder. False if that was cancelled; `path` is then left alone. Main thread.
    virtual bool chooseFile(const FileQuestion& question, std::string& path) = 0;
};

/// The answer to a message box of these buttons that changes nothing: cancel, no, abort, or OK where that is all.
GEMB_R RefusingAnswer(GEMB flags);

} // namespace host

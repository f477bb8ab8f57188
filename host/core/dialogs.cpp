#include "core/dialogs.h"

#include "core/application.h"
#include "core/string_access.h"

namespace host {
namespace {

constexpr int kButtons = 0x0F; // the part of the flags that says which buttons there are

// Null, with a line to the console, where nobody can be asked.
Dialogs* whoAnswers(std::string_view question)
{
    Application& application = Application::current();
    if (!application.onMainThread()) {
        application.print("Not asked, being on a thread of its own: " + std::string(question));
        return nullptr;
    }
    if (!application.options().dialogs) application.print(question);
    return application.options().dialogs;
}

} // namespace

GEMB_R RefusingAnswer(GEMB flags)
{
    switch (flags & kButtons) {
    case GEMB_OKCANCEL:
    case GEMB_YESNOCANCEL:
    case GEMB_RETRYCANCEL: return GEMB_R_CANCEL;
    case GEMB_ABORTRETRYIGNORE: return GEMB_R_ABORT;
    case GEMB_YESNO: return GEMB_R_NO;
    default: return GEMB_R_OK;
    }
}

} // namespace host

GEMB_R GeOutString(const String& str, GEMB flags)
{
    const std::string text = host::Utf8Of(str);
    host::Dialogs* dialogs = host::whoAnswers(text);
    return dialogs ? dialogs->message(text, flags) : host::RefusingAnswer(flags);
}

void MessageDialog(const String& str)
{
    GeOutString(str, GEMB_OK | GEMB_ICONEXCLAMATION);
}

Bool Filename::FileSelect(FILESELECTTYPE type, FILESELECT flags, const String& title, const String& force_suffix)
{
    const host::FileQuestion question{.type = type,
                                      .mode = flags,
                                      .title = host::Utf8Of(title),
                                      .suffix = host::Utf8Of(force_suffix),
                                      .start = host::Utf8Of(GetString())};
    host::Dialogs* dialogs = host::whoAnswers(question.title);
    std::string path;
    if (!dialogs || !dialogs->chooseFile(question, path)) return false;
    SetString(host::TextOf(path));
    if (flags == FILESELECT_SAVE && force_suffix.Content() && !CheckSuffix(force_suffix)) SetSuffix(force_suffix);
    return true;
}

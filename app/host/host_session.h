// The embedded host with the plant module in it, as long as one command runs.
#pragma once

#include "c4d.h"
#include "customgui_unitscale.h"

#include <memory>
#include <string>

namespace host {
class Application;
}

namespace verdanth {

class Console;
class SessionAnswers;

class HostSession {
public:
    HostSession();
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;
    ~HostSession();

    /// Starts the host and the module that stands beside the program, or where VERDANTH_MODULE says. The module finds
    /// moved plants in `library`, if there is one. Stand-ins for all renderers are there, so that scenes keep their
    /// materials. False, with the error told, if there is no usable module.
    bool start(const std::string& library, Console& console);

private:
    std::unique_ptr<SessionAnswers> answers; // asked as long as the application lives
    std::unique_ptr<host::Application> application;
};

/// A document of the host's, freed with this.
class OwnDocument {
public:
    /// Empty, with lengths in `unit`.
    explicit OwnDocument(DOCUMENT_UNIT unit = DOCUMENT_UNIT_M);
    /// Takes `taken` over; may be null.
    explicit OwnDocument(BaseDocument* taken) : document(taken) {}
    OwnDocument(const OwnDocument&) = delete;
    OwnDocument& operator=(const OwnDocument&) = delete;
    ~OwnDocument();

    BaseDocument* get() const { return document; }
    BaseDocument* operator->() const { return document; }
    explicit operator bool() const { return document != nullptr; }

private:
    BaseDocument* document;
};

/// Between the host's texts and UTF-8.
String HostText(const std::string& text);
std::string Utf8Text(const String& text);

} // namespace verdanth

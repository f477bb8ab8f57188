// The documents that are open, and what happens to whole documents: opening, merging, saving, closing.
//
// Whoever works on a document here first stops the worker: all of it sends messages to nodes. Errors are printed to the
// console, in a line that names the file.
#pragma once

#include "core/application.h"
#include "core/document.h"

namespace host {

class Documents final : public ApplicationPart {
public:
    Documents();
    void end(Ending step) override;

    /// Null if none is active. Any thread.
    BaseDocument* Active() const { return active; }
    BaseDocument* First() const { return FacadeOf<BaseDocument>(list.firstChild); }
    /// Takes the document over, as the first of the list.
    void Insert(BaseDocument& document);
    void SetActive(BaseDocument* document);
    /// Tells the nodes, then frees the document. Another open one becomes the active one.
    void Close(BaseDocument* document);

    /// Starts a pass over the active document if its last one was broken off. For a main loop with nothing to do.
    void FinishPasses();

private:
    ListCore list;
    BaseDocument* active = nullptr;
};

/// Reads a scene into a document of its own and tells its nodes. The caller's; null on failure.
BaseDocument* ReadDocument(const Filename& name, SCENEFILTER flags);
/// The same, entered into the list and made active; of the file everything is taken.
BaseDocument* OpenDocument(const Filename& name);
/// Adds what a scene file holds to a document, in one undo step unless `flags` say otherwise.
bool MergeScene(BaseDocument& document, const Filename& name, SCENEFILTER flags);
/// Writes the document and gives it that path and name. On failure nothing changes.
bool SaveScene(BaseDocument& document, const Filename& name);

/// What became of the files that a project needs, by their paths as the nodes told them.
struct ProjectReport {
    std::vector<Filename> copied;  // to where they stand now
    std::vector<Filename> missing; // found nowhere
    std::vector<Filename> failed;  // not copied: the place was taken by another file, or could not be written
};

/// Saves the document under `name` together with the files that it needs, in the same folder, so that the folder can be
/// moved. Missing files are no failure. If the scene cannot be written at the end, the document stays unsaved, with the
/// new folder as its own: its nodes know their files by bare names then, and there they are found.
bool SaveProject(BaseDocument& document, const Filename& name, ProjectReport& report);

} // namespace host

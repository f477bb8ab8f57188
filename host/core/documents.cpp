#include "core/documents.h"

#include "core/core_messages.h"
#include "core/document_messages.h"
#include "core/evaluation.h"
#include "core/node_class.h"

namespace host {

Documents::Documents()
{
    PartOf<Registrations>(); // classes outlive the nodes made of them
    std::function<void(EVENT)>& onChange = PartOf<CoreMessages>().onChange;
    if (onChange) return; // a front end draws after it evaluates
    onChange = [this](EVENT) {
        if (active) StartPass(*active);
    };
}

void Documents::end(Ending step)
{
    if (step != Ending::Documents) return;
    while (!list.IsEmpty()) Close(First());
}

void Documents::Insert(BaseDocument& document)
{
    NodeCore* node = CoreOf(&document);
    if (node->IsLinked()) return;
    list.Insert(*node, nullptr);
}

void Documents::SetActive(BaseDocument* document)
{
    if (document == active || (document && CoreOf(document)->list != &list)) return;
    StopAllThreads();
    active = document;
    if (active) SendDocumentInfo(*CoreOf(active), MSG_DOCUMENTINFO_TYPE_SETACTIVE);
}

void Documents::Close(BaseDocument* document)
{
    if (!document) return;
    StopAllThreads();
    SendDocumentInfo(*CoreOf(document), MSG_DOCUMENTINFO_TYPE_REMOVE);
    CoreOf(document)->Unlink();
    if (document == active) {
        active = nullptr;
        SetActive(First());
    }
    BaseDocument::Free(document);
}

void Documents::FinishPasses()
{
    if (active && CoreOf(active)->passDue) StartPass(*active);
}

} // namespace host

using host::Documents;
using host::PartOf;

BaseDocument* GetActiveDocument()
{
    return host::Application::running() ? PartOf<Documents>().Active() : nullptr;
}

void InsertBaseDocument(BaseDocument* document)
{
    if (document) PartOf<Documents>().Insert(*document);
}

void SetActiveDocument(BaseDocument* document)
{
    PartOf<Documents>().SetActive(document);
}

void KillDocument(BaseDocument*& document)
{
    PartOf<Documents>().Close(document);
    document = nullptr;
}

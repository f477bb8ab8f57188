// Reads one model file, `.vdt` or `.vdt.gz`, into a model.
//
// All reported problems go to the message handler and leave the parse running. Unknown elements and attributes are
// passed over. References to missing points are left out of what enters the records, so that nothing behind the
// reader has to check. The format is told in docs/file_format.md. One reader does one file, on one thread.
#pragma once

#include "vdt/file/elements.h"
#include "vdt/file/number_list.h"
#include "vdt/file/simple_xml.h"
#include "vdt/model/model.h"

#include <string>

namespace vdt {

class VdtReader : public SimpleXml {
public:
    /// Both belong to the caller and outlive the reader.
    VdtReader(Model& model, MessageHandler& handler);

    /// Opens the file, parses it and makes the paths in the model absolute. False if it cannot be opened, is empty
    /// or had to be given up; the model then holds what was complete by then.
    bool readFile(const std::string& path);

    void startDocument() override {}
    void endDocument() override {}
    void startElement(std::string_view name, const std::vector<XmlAttribute>& attributes) override;
    void endElement(std::string_view name) override;
    void characters(std::string_view text) override;
};

} // namespace vdt

// Writes model files that read back as the same records, every number bit for bit.
#pragma once

#include "vdt/messages/message_handler.h"
#include "vdt/model/model.h"

#include <ostream>
#include <string>

namespace vdt {

struct VdtWriterOptions {
    /// Writes the file as the target of an extref: no plant, the first variant alone.
    bool withoutPlant = false;
    /// Paths inside this directory are written relative to it. Ends in a slash, or is empty.
    std::string baseDirectory{};
};

class VdtWriter {
public:
    VdtWriter(const Model& source, MessageHandler& handler, VdtWriterOptions writerOptions = {});

    /// Writes beside `path` and renames into place. Compresses if the path ends in ".gz". The base directory is the
    /// path's own unless the options name another. False, with an error that names file and cause, if that fails.
    bool writeFile(const std::string& path);

    /// Writes the text, plain or as gzip. False if the stream failed or the model cannot be told in the format, such as
    /// a text with a zero byte or a polygon of more than five corners.
    bool write(std::ostream& stream, bool compressed = false);

private:
    const Model* model;
    MessageHandler* messageHandler;
    VdtWriterOptions options;
};

} // namespace vdt

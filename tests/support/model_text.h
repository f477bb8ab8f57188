// Reading model texts in tests.
#pragma once

#include "support/recording_messages.h"
#include "vdt/file/vdt_reader.h"

#include <sstream>
#include <string>

namespace vdt::test {

struct ReadModel {
    Model model;
    RecordingMessages messages;
    std::vector<std::string> losses;
};

/// A reader that keeps the losses.
class LossReader final : public VdtReader {
public:
    LossReader(Model& target, MessageHandler& handler, std::vector<std::string>& sink)
        : VdtReader(target, handler),
          losses(&sink)
    {
    }

protected:
    void onLoss(const std::string& what) override { losses->push_back(what); }

private:
    std::vector<std::string>* losses;
};

inline ReadModel readText(const std::string& text)
{
    ReadModel read;
    LossReader reader(read.model, read.messages, read.losses);
    std::istringstream stream(text);
    reader.parse(stream, 0);
    return read;
}

/// `content` inside a plant.
inline ReadModel readPlant(const std::string& content)
{
    return readText("<verdanth version=\"1.2\"><plant>" + content + "</plant></verdanth>");
}

} // namespace vdt::test

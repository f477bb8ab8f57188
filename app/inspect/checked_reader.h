// A reader that keeps what ordinary reading passes over in silence.
#pragma once

#include "inspect/finding.h"
#include "vdt/file/vdt_reader.h"

#include <set>
#include <string>
#include <vector>

namespace verdanth {

/// Turns a reader's reports into findings; progress and cancelling are the terminal's.
class FindingMessages final : public vdt::MessageHandler {
public:
    FindingMessages(FindingList& findingList, vdt::MessageHandler& terminal)
        : findings(&findingList),
          console(&terminal)
    {
    }
    void endProgress() override { console->endProgress(); }
    void beginProgress(std::string_view text) override { console->beginProgress(text); }
    void progress(float fraction) override { console->progress(fraction); }
    void message(std::string_view) override {}
    void warning(std::string_view text) override { findings->warn("reader", std::string(text)); }
    void error(std::string_view text) override { findings->fail("reader", std::string(text)); }
    void debug(std::string_view) override {}
    bool isCancelled() override { return console->isCancelled(); }

private:
    FindingList* findings;
    vdt::MessageHandler* console;
};

class CheckedReader final : public vdt::VdtReader {
public:
    CheckedReader(vdt::Model& target, vdt::MessageHandler& handler, FindingList& findingList)
        : VdtReader(target, handler),
          findings(&findingList)
    {
    }

    void startElement(std::string_view name, const std::vector<vdt::XmlAttribute>& attributes) override;
    void onLoss(const std::string& what) override;

    bool hasPlant = false;              // a `plant` element: a main file, with materials of its own
    std::vector<bool> variantHasFrames; // one a `model` element: branches came with an `orient` attribute

private:
    // Files repeat one mistake in every mesh: the same sentence is told once.
    std::set<std::string> toldLosses;
    FindingList* findings;
    bool inPolylines = false;
};

} // namespace verdanth

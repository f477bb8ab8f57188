#include "core/disk_file.h"
#include "core/file_fault.h"
#include "core/hyper_stream.h"
#include "core/node_class.h"
#include "core/scene_file.h"
#include "core/scene_format.h"
#include "core/string_access.h"

namespace host {
namespace {

constexpr UInt64 kLow64 = ~UInt64(0);

class SceneWriter {
public:
    explicit SceneWriter(const DocumentCore& document) : file(HyperStream::Write(kSceneFile))
    {
        file->SetFileVersion(API_VERSION);
        // Links may lead to nodes that come later, so all nodes have their numbers first.
        numberNode(document);
        HyperStream::Of(*file).nodeNumbers = &numbers;
        HyperStream::Of(*file).document = document.As<BaseDocument>();
        writeNode(document, 0);
    }

    std::vector<uint8_t> takeBytes() { return HyperStream::Of(*file).takeBytes(); }

    std::string report;

private:
    // Calls `visit` for the nodes of a list with their depths, parents first.
    template <class Visit> static void walk(const ListCore& list, const Visit& visit)
    {
        Int32 depth = 0;
        for (const NodeCore* node = list.firstChild; node;) {
            visit(*node, depth);
            if (node->firstChild) {
                node = node->firstChild;
                ++depth;
                continue;
            }
            for (; node && !node->next; --depth) node = node->up;
            if (node) node = node->next;
        }
    }

    // The node's lists that stand in files and have something in them.
    template <class Visit> static void forEachList(const NodeCore& node, const Visit& visit)
    {
        const std::vector<ListCore*> branches = node.Branches();
        for (const StoredList& stored : kStoredLists) {
            for (const ListCore* list : branches) {
                if (!list->IsEmpty() && list->firstChild->Kind() == stored.kind) visit(stored, *list);
            }
        }
    }

    void numberNode(const NodeCore& node)
    {
        numbers.emplace(node.GetMarker(), numbers.size() + 1);
        forEachList(node, [this](const StoredList&, const ListCore& list) {
            walk(list, [this](const NodeCore& each, Int32) { numberNode(each); });
        });
    }

    void writeNode(const NodeCore& node, Int32 depth)
    {
        file->WriteChunkStart(kNodeChunk, kSceneLevel);
        file->WriteInt32(node.Type());
        file->WriteUInt64(numbers.at(node.GetMarker()));
        file->WriteInt32(depth);
        file->WriteString(node.name);
        file->WriteInt32(node.bits & ~kBitsNotStored);
        const std::bitset<128> low(kLow64);
        file->WriteUInt64((node.nodeBits & low).to_ullong());
        file->WriteUInt64((node.nodeBits >> 64).to_ullong());
        if (!file->WriteContainer(node.container)) complain(node, "a parameter cannot be written");

        file->WriteChunkStart(kBodyChunk, NodeCore::kBodyLevel);
        fenced([&] { return node.WriteBody(*file); }, node, "its built-in values cannot be written");
        file->WriteChunkEnd();
        if (node.data) {
            file->WriteChunkStart(kDataChunk, node.nodeClass->diskLevel);
            fenced([&] { return node.data->Write(node.As<GeListNode>(), file.get()) != 0; }, node,
                   "the plug-in could not write its data");
            file->WriteChunkEnd();
        }
        forEachList(node, [this](const StoredList& stored, const ListCore& list) {
            file->WriteChunkStart(kListChunk, kSceneLevel);
            file->WriteInt32(stored.id);
            walk(list, [this](const NodeCore& each, Int32 below) { writeNode(each, below); });
            file->WriteChunkEnd();
        });
        file->WriteChunkEnd();
    }

    template <class Write> void fenced(const Write& write, const NodeCore& node, const char* words)
    {
        const HyperStream::Fence fence(*file);
        if (!write()) complain(node, words);
    }

    void complain(const NodeCore& node, const char* words)
    {
        if (!report.empty()) report += '\n';
        report += "\"" + Utf8Of(node.name) + "\": " + words;
    }

    HyperFilePtr file;
    NodeNumbers numbers;
};

} // namespace

std::vector<uint8_t> SceneBytes(const DocumentCore& document, std::string& report)
{
    SceneWriter writer(document);
    report = writer.report;
    return writer.takeBytes();
}

bool WriteScene(const DocumentCore& document, const std::filesystem::path& file, std::string& report)
{
    const std::vector<uint8_t> bytes = SceneBytes(document, report);
    if (!report.empty()) {
        report = NameForReport(file) + " was not saved: " + report;
        return false;
    }
    if (SaveFile(file, bytes)) return true;
    report = NameForReport(file) + " cannot be written; what stood there is as it was";
    return false;
}

} // namespace host

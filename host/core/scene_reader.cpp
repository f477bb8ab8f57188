#include "core/disk_file.h"
#include "core/file_fault.h"
#include "core/hyper_stream.h"
#include "core/node_class.h"
#include "core/scene_file.h"
#include "core/scene_format.h"
#include "core/string_access.h"

#include <algorithm>
#include <atomic>
#include <set>

namespace host {
namespace {

constexpr size_t kDeepestTree = 256; // generations; whoever walks a tree by recursion gets through
constexpr int kDeepestOwnership = 16;
constexpr size_t kMostLines = 50; // of a report

// Markers for the nodes of one file, apart from those of all others and of nodes that are made one by one.
UInt64 freshMarkers()
{
    static std::atomic<UInt64> files = 0;
    return UInt64(1) << 63 | (files++ % HyperStream::kMostNodes) * HyperStream::kMostNodes;
}

// The lines of a report, each once and not without end.
class SceneReport {
public:
    explicit SceneReport(std::string fileName) : name(std::move(fileName)) {}

    void add(const std::string& words)
    {
        const std::string line = name + ": " + words;
        if (told.contains(line)) return;
        if (told.size() < kMostLines) {
            text += (text.empty() ? "" : "\n") + line;
            told.insert(line);
        } else {
            ++untold;
        }
    }

    std::string whole() const
    {
        return untold ? text + "\n" + name + ": and " + std::to_string(untold) + " more" : text;
    }

private:
    std::string name;
    std::string text;
    std::set<std::string> told;
    size_t untold = 0;
};

struct NodeHead {
    size_t place = 0; // of the chunk in the file
    Int32 type = 0;
    UInt64 number = 0;
    Int32 depth = 0;
    String name;
    Int32 bits = 0;
    UInt64 lowNodeBits = 0, highNodeBits = 0;
};

class SceneReader {
public:
    SceneReader(std::span<const uint8_t> bytes, SceneReport& told)
        : file(HyperStream::Read(kSceneFile, bytes)),
          report(told),
          size(bytes.size())
    {
        if (file) stream().firstMarker = freshMarkers();
    }

    bool read(DocumentCore& document)
    {
        if (!file) return false;
        NodeHead head;
        Int32 id = 0, level = 0;
        if (!file->ReadChunkStart(&id, &level) || id != kNodeChunk) return false;
        if (file->GetError() == FILEERROR_FILE_END) {
            // The cut runs through all chunks at the end; once is enough.
            report.add("the file ends too early, at byte " + std::to_string(size));
            isCut = true;
            stream().forgetError();
        }
        if (!readHead(head) || head.type != document.Type()) return false;
        readNode(document, head);
        return true;
    }

private:
    // Where the nodes of a list go: by depth the nodes that may have children, null for the list itself.
    struct Tree {
        ListCore& list;
        const StoredList& stored;
        std::vector<NodeCore*> parents;
        Int32 leftOutDepth = LIMIT<Int32>::MAX; // nodes below this depth belong to one that was left out
    };

    HyperStream& stream() { return HyperStream::Of(*file); }

    // Tells an error of the file, if there is one, and goes on.
    void tellError(const String& where)
    {
        const FILEERROR error = file->GetError();
        if (error == FILEERROR_NONE) return;
        stream().forgetError();
        if (error != FILEERROR_FILE_END || !isCut) tell(where, FaultText(error, stream().errorPosition()));
    }

    void tell(const String& node, const std::string& words) { report.add("\"" + Utf8Of(node) + "\": " + words); }
    void tell(const NodeHead& head, const std::string& words)
    {
        tell(head.name, words + ", at byte " + std::to_string(head.place));
    }

    bool readHead(NodeHead& head)
    {
        return file->ReadInt32(&head.type) && file->ReadUInt64(&head.number) && file->ReadInt32(&head.depth) &&
               file->ReadString(&head.name) && file->ReadInt32(&head.bits) && file->ReadUInt64(&head.lowNodeBits) &&
               file->ReadUInt64(&head.highNodeBits);
    }

    // Fills a fresh node from the present chunk. False if its plug-in refuses the data.
    bool readNode(NodeCore& node, const NodeHead& head)
    {
        node.name = head.name;
        node.bits = head.bits & ~kBitsNotStored;
        node.nodeBits = std::bitset<128>(head.highNodeBits) << 64 | std::bitset<128>(head.lowNodeBits);
        if (head.number > 0 && head.number < HyperStream::kMostNodes)
            node.SetMarker(stream().firstMarker + head.number);
        file->ReadContainer(&node.container, false);
        tellError(head.name);

        dropFreshLists(node);
        bool accepted = true, dataRead = false;
        Int32 id = 0, level = 0;
        while (stream().more() && accepted) {
            if (!file->ReadChunkStart(&id, &level)) break;
            if (id == kBodyChunk) readBody(node, level);
            if (id == kListChunk) readList(node);
            if (id == kDataChunk && node.data && !std::exchange(dataRead, true)) accepted = readData(node, level);
            tellError(head.name);
            file->ReadChunkEnd();
        }
        tellError(head.name);
        return accepted;
    }

    void readBody(NodeCore& node, Int32 level)
    {
        const HyperStream::Fence fence(*file);
        if (node.ReadBody(*file, level)) return;
        const FILEERROR error = file->GetError() == FILEERROR_NONE ? FILEERROR_INVALID : file->GetError();
        tell(node.name, "built-in values: " + FaultText(error, stream().errorPosition()));
    }

    bool readData(NodeCore& node, Int32 level)
    {
        const HyperStream::Fence fence(*file);
        return node.data->Read(node.As<GeListNode>(), file.get(), level);
    }

    // What a fresh node has by itself would come a second time. A document is never without render settings, so those
    // stay until others have come.
    static void dropFreshLists(NodeCore& node)
    {
        for (ListCore* list : node.Branches()) {
            if (list->IsEmpty()) continue;
            const NodeKind kind = list->firstChild->Kind();
            const auto stored = std::ranges::find(kStoredLists, kind, &StoredList::kind);
            if (stored != std::end(kStoredLists) && kind != NodeKind::RenderData) list->Flush();
        }
    }

    void readList(NodeCore& owner)
    {
        Int32 id = 0;
        if (!file->ReadInt32(&id)) return;
        const auto stored = std::ranges::find(kStoredLists, id, &StoredList::id);
        ListCore* list = stored == std::end(kStoredLists) ? nullptr : stored->of(owner);
        if (!list || ownership >= kDeepestOwnership) {
            tell(owner.name, "a list that cannot be here is left out, at byte " + std::to_string(stream().position()));
            return;
        }
        std::vector<NodeCore*> fresh;
        for (NodeCore* node = list->firstChild; node; node = node->next) fresh.push_back(node);
        ++ownership;
        readNodes({*list, *stored, {}});
        --ownership;
        if (fresh.empty() || list->lastChild == fresh.back()) return;
        for (NodeCore* node : fresh) FreeNode(node);
    }

    void readNodes(Tree tree)
    {
        while (stream().more()) {
            NodeHead head;
            head.place = stream().position();
            Int32 id = 0, level = 0;
            if (!file->ReadChunkStart(&id, &level)) break;
            if (id == kNodeChunk && readHead(head)) readInto(tree, head);
            tellError(head.name);
            file->ReadChunkEnd();
        }
    }

    void readInto(Tree& tree, const NodeHead& head)
    {
        if (head.depth > tree.leftOutDepth) return;
        tree.leftOutDepth = LIMIT<Int32>::MAX;
        const size_t depth = depthIn(tree, head);
        NodeCore* parent = depth > 0 ? tree.parents[depth - 1] : nullptr;
        tree.parents.resize(depth);

        if (!PartOf<Registrations>().FindClass(tree.stored.kind, head.type)) {
            tell(head, "left out, its type " + std::to_string(head.type) + " is unknown");
            tree.parents.push_back(parent);
            return;
        }
        NodeCore* node = AllocNode(tree.stored.kind, head.type);
        if (!node || !readNode(*node, head)) {
            tell(head, "left out with all below it, its plug-in refuses it");
            FreeNode(node);
            tree.leftOutDepth = head.depth;
            tree.parents.push_back(parent);
            return;
        }
        if (parent)
            parent->InsertChild(*node, parent->lastChild);
        else
            tree.list.InsertLast(*node);
        tree.parents.push_back(node);
    }

    size_t depthIn(const Tree& tree, const NodeHead& head)
    {
        if (!tree.stored.hasTrees || head.depth <= 0) return 0;
        const size_t depth = std::min(static_cast<size_t>(head.depth), tree.parents.size());
        if (depth < kDeepestTree) return depth;
        tell(head, "stands too deep and was moved up");
        return kDeepestTree - 1;
    }

    HyperFilePtr file;
    SceneReport& report;
    size_t size;        // of the file
    bool isCut = false; // it ends before its outermost chunk does
    int ownership = 0;
};

} // namespace

bool ReadScene(const std::filesystem::path& file, DocumentCore& document, std::string& report)
{
    const auto bytes = LoadFile(file);
    if (bytes) return ReadScene(*bytes, NameForReport(file), document, report);
    report = NameForReport(file) + ": cannot be read";
    return false;
}

bool ReadScene(std::span<const uint8_t> bytes, const std::string& name, DocumentCore& document, std::string& report)
{
    SceneReport lines(name);
    SceneReader reader(bytes, lines);
    const bool isScene = reader.read(document);
    if (!isScene) lines.add("is no scene of this program, or its beginning is damaged");
    report = lines.whole();
    return isScene;
}

} // namespace host

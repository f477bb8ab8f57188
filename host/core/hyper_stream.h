// The bytes behind a HyperFile: typed values in nested chunks, all in memory.
//
// A file is a header of 20 bytes - the magic word, the format's version (UInt32), the kind of file (Int32, told by who
// opens it) and the content's version (Int32) - and then values up to its end. All numbers are little-endian. A value
// is a tag of one byte (HYPERFILEVALUE, or the one below) and what belongs to it:
//
//   integers, floats   as many bytes as the type has; Bool 1
//   TIME               numerator and denominator, 64-bit floats
//   VECTOR, MATRIX     3 or 12 64-bit floats; a matrix as offset and axes
//   STRING, FILENAME   length in bytes (UInt64), UTF-8
//   MEMORY             length in bytes (UInt64), bytes
//   START, a chunk     id and level (Int32), length in bytes (UInt64), values
//   CONTAINER          id (Int32), length (UInt64), and for each entry: the entry's id (Int32), a GeData
//   kGeDataTag         type (Int32), length (UInt64), a value of the type; custom data has the level of its class as
//                      an INT32 and then what the class wrote; DA_VOID has nothing and is read as nil
//   ALIASLINK          the number of the linked node (UInt64), 0 for none
//
// Nothing in a file is trusted: no length reaches beyond what encloses it, containers nest to a depth of kDeepest, and
// nothing is allocated before its bytes are known to be there. A chunk or container whose length reaches too far is
// read up to where the bytes end. The first error is kept with the place where it happened.
#pragma once

#include "c4d_gedata.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <span>
#include <vector>

namespace host {

struct HyperFileDeleter {
    void operator()(HyperFile* file) const { HyperFile::Free(file); }
};
using HyperFilePtr = std::unique_ptr<HyperFile, HyperFileDeleter>;

/// By the markers of nodes the numbers that they have in a file.
using NodeNumbers = std::map<UInt64, UInt64>;

class HyperStream {
public:
    static constexpr Int32 kDeepest = 64;
    static constexpr uint8_t kGeDataTag = 200;
    static constexpr size_t kHeaderSize = 20;
    static constexpr UInt64 kMostNodes = UInt64(1) << 32;

    // Files in memory. Reading leaves the bytes where they are; they must outlive the file.

    static HyperFilePtr Write(Int32 ident);
    /// Null if the bytes do not begin with the header of such a file.
    static HyperFilePtr Read(Int32 ident, std::span<const uint8_t> bytes);
    static HyperStream& Of(HyperFile& file) { return *file.stream; }

    /// What was written; the file is closed then.
    std::vector<uint8_t> takeBytes();

    // What links become: numbers when they are written, markers from the first one on when they are read. Without
    // these links lead nowhere.
    const NodeNumbers* nodeNumbers = nullptr; // outlives the file
    UInt64 firstMarker = 0;                   // of the node number 0, which is none
    BaseDocument* document = nullptr;

    /// Counted from the start of the file.
    size_t position() const { return at; }
    size_t errorPosition() const { return errorAt; }
    /// Whether the present chunk has more values.
    bool more() const { return at < limit; }
    void forgetError() { error = FILEERROR_NONE; }

    /// Keeps a plug-in's callback within the present chunk: it cannot end what the host began, chunks that it leaves
    /// open are closed, and its errors are forgotten: it may try what a value is, and its result tells the rest.
    class Fence {
    public:
        explicit Fence(HyperFile& file);
        Fence(const Fence&) = delete;
        Fence& operator=(const Fence&) = delete;
        ~Fence();

    private:
        HyperStream& stream;
        size_t outerFloor;
        FILEERROR outerError;
        size_t outerErrorAt;
        size_t outerFaults;
    };

private:
    friend class ::HyperFile;

    enum class Mode { Closed, Reading, Writing };
    /// What became of a value: read, left out with the position behind it, or not there with the position unchanged.
    enum class Taken { Whole, LeftOut, Nothing };

    bool fail(FILEERROR code);
    bool failAt(size_t place, FILEERROR code);
    bool canWrite();

    bool startReading(Int32 ident, std::span<const uint8_t> all);
    void startWriting(Int32 ident);

    template <class Number> void patch(size_t place, Number value);
    template <class Number> void putNumber(Number value);
    template <class... Numbers> bool put(uint8_t tag, Numbers... values);
    bool putBytes(uint8_t tag, std::span<const uint8_t> content);
    void beginLength();
    void endLength();

    template <class Number> Number getNumber();
    template <class... Numbers> bool take(uint8_t tag, Numbers*... values);
    bool has(uint8_t tag, size_t size);
    bool takeBytes(uint8_t tag, std::span<const uint8_t>& content);
    bool skip(uint8_t tag);
    void enter(UInt64 length);
    void leave();

    bool putGeData(const GeData& value);
    bool putGeContent(const GeData& value);
    bool putCustomData(const GeData& value);
    bool putContainer(const BaseContainer& value);
    Taken takeGeData(GeData& value);
    bool takeGeContent(Int32 type, GeData& value);
    bool takeCustomData(Int32 type, GeData& value);
    bool takeContainer(BaseContainer& value, bool flush);
    UInt64 numberOf(const BaseLink& link) const;
    UInt64 markerFor(UInt64 number) const;

    HyperFile* facade = nullptr;
    Mode mode = Mode::Closed;
    Int32 fileVersion = 0;
    std::filesystem::path path; // where Close writes to; empty: a file in memory

    std::vector<uint8_t> own; // what was written, or read from disk
    std::span<const uint8_t> bytes;
    size_t at = 0;              // of the next value
    size_t limit = 0;           // end of the present chunk, value or file
    std::vector<size_t> scopes; // reading: the limits around it; writing: where the lengths stand
    size_t floor = 0;           // the scopes below are not the callback's
    Int32 depth = 0;            // of containers

    FILEERROR error = FILEERROR_NONE;
    size_t errorAt = 0;
    size_t faults = 0; // errors so far, remembered or not
};

} // namespace host

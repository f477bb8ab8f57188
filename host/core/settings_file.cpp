#include "core/settings_file.h"

#include "core/disk_file.h"
#include "core/file_fault.h"
#include "core/hyper_stream.h"

namespace host {
namespace {

constexpr Int32 kSettingsFile = 0x53455431; // the kind of file
constexpr Int32 kLevel = 1;

} // namespace

bool ReadSettings(const std::filesystem::path& file, std::map<Int32, BaseContainer>& settings, std::string& fault)
{
    const auto bytes = LoadFile(file);
    if (bytes) return ReadSettings(*bytes, NameForReport(file), settings, fault);
    fault = NameForReport(file) + ": cannot be read";
    return false;
}

bool ReadSettings(std::span<const uint8_t> bytes, const std::string& name, std::map<Int32, BaseContainer>& settings,
                  std::string& fault)
{
    const HyperFilePtr file = HyperStream::Read(kSettingsFile, bytes);
    if (!file) {
        fault = name + ": is no settings file of this program";
        return false;
    }
    const HyperStream& stream = HyperStream::Of(*file);
    Int32 id = 0, level = 0;
    while (stream.more() && file->ReadChunkStart(&id, &level)) {
        file->ReadContainer(&settings[id], true);
        file->ReadChunkEnd();
    }
    if (file->GetError() == FILEERROR_NONE) return true;
    fault = name + ": " + FaultText(file->GetError(), stream.errorPosition());
    return false;
}

bool WriteSettings(const std::filesystem::path& file, const std::map<Int32, BaseContainer>& settings,
                   std::string& fault)
{
    const HyperFilePtr written = HyperStream::Write(kSettingsFile);
    for (const auto& [id, container] : settings) {
        written->WriteChunkStart(id, kLevel);
        written->WriteContainer(container);
        written->WriteChunkEnd();
    }
    // Values that nobody can write any more are left out; the rest is worth keeping.
    if (SaveFile(file, HyperStream::Of(*written).takeBytes())) return true;
    fault = NameForReport(file) + ": cannot be written";
    return false;
}

} // namespace host

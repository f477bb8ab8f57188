#include "module/modules.h"

#include "c4d_plugin.h"
#include "core/node_class.h"
#include "core/string_access.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <dlfcn.h>
#include <elf.h>
#include <fstream>
#include <utility>

namespace host {
namespace {

// The host has no pages of its own to open.
void openNoHelp(const String&, const String&, const String&, const String&)
{
}

// True for a library of which the end is missing. The dynamic loader maps what the headers promise, without a look at
// the file's length, and dies of the difference.
bool isCutShort(const std::string& path)
{
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    Elf64_Ehdr header{};
    if (error || !file.read(reinterpret_cast<char*>(&header), sizeof(header))) return false;
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64) return false;

    for (unsigned i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        file.seekg(static_cast<std::streamoff>(header.e_phoff + i * sizeof(segment)));
        if (!file.read(reinterpret_cast<char*>(&segment), sizeof(segment))) return true;
        if (segment.p_offset > size || segment.p_filesz > size - segment.p_offset) return true;
    }
    return false;
}

// What the dynamic loader complains about, without the name of the file, which it puts first.
std::string loaderComplaint(const std::string& file)
{
    const char* raw = dlerror();
    std::string complaint = raw ? raw : "it cannot be opened";
    if (complaint.starts_with(file + ": ")) complaint.erase(0, file.size() + 2);
    return complaint;
}

std::string whyRefused(Int32 answer)
{
    switch (answer) {
    case C4DPL_ERROR_VERSION: return "it needs a newer host than this one of level " + std::to_string(GetC4DVersion());
    case C4DPL_ERROR_OS: return "it is made for another system";
    case C4DPL_ERROR_MEM: return "memory is short";
    default: return "it refused to load, with the answer " + std::to_string(answer);
    }
}

// Where the library or program that holds `address` begins in memory; null if that is not known.
const void* imageOf(const void* address)
{
    Dl_info info;
    return dladdr(address, &info) ? info.dli_fbase : nullptr;
}

} // namespace

struct Modules::Module {
    EntryPoint entry = nullptr;
    Filename file;
    Int32 priority = C4DPL_INIT_PRIORITY_PLUGINS;
    bool started = false;

    std::string name() const { return Utf8Of(file.GetString()); }
    const void* image() const { return imageOf(reinterpret_cast<const void*>(entry)); }
};

Modules::Modules() : general{.OpenHelpBrowser = openNoHelp}
{
    tables = {.version = Application::current().options().apiLevel, .Ge = &general};
}

Modules::~Modules() = default;

void Modules::end(Ending step)
{
    switch (step) {
    case Ending::Announcement: return send(C4DPL_ENDPROGRAM, nullptr);
    case Ending::Activity: return send(C4DPL_ENDACTIVITY, nullptr);
    case Ending::Modules: return endModules();
    default: return;
    }
}

bool Modules::load(const std::filesystem::path& file)
{
    std::error_code error;
    const std::string path = std::filesystem::absolute(file, error).string();
    const auto refuse = [&path](const std::string& cause) {
        Application::current().print("Cannot load plug-in " + path + ": " + cause);
        return false;
    };
    if (isCutShort(path)) return refuse("it is a library of which the end is missing");
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) return refuse(loaderComplaint(path));

    const auto entry = reinterpret_cast<EntryPoint>(dlsym(library, "c4d_main"));
    if (!entry) {
        dlclose(library);
        return refuse("it is a library without the entry point c4d_main");
    }
    if (attach(entry, Filename(TextOf(path)))) return true;
    dlclose(library);
    return false;
}

bool Modules::attach(EntryPoint entry, const Filename& file)
{
    Module module{.entry = entry, .file = file};
    const auto refuse = [&module](const std::string& cause) {
        Application::current().print("Cannot load plug-in " + module.name() + ": " + cause);
        return false;
    };
    if (std::ranges::any_of(modules, [entry](const auto& other) { return other->entry == entry; }))
        return refuse("it is loaded already");
    if (const Int32 version = call(module, C4DPL_INIT_VERSION); version != C4DPL_VERSION)
        return refuse("it speaks version " + std::to_string(version) + " of the protocol, not " +
                      std::to_string(C4DPL_VERSION));
    const Int32 answer = call(module, C4DPL_INIT_SYS, &tables, nullptr, &module.file);
    if (answer < 0) return refuse(whyRefused(answer));

    modules.push_back(std::make_unique<Module>(std::move(module)));
    return true;
}

void Modules::start()
{
    for (const auto& module : modules) sendTo(*module, C4DMSG_PRIORITY, &module->priority);
    std::ranges::stable_sort(modules, std::ranges::greater(), [](const auto& module) { return module->priority; });

    for (const auto& module : modules) {
        module->started = sendTo(*module, C4DPL_INIT_SYS, nullptr) != C4DPL_ERROR;
        if (!module->started) Application::current().print(module->name() + " did not want to start");
    }
    for (const auto& module : modules)
        if (module->started && call(*module, C4DPL_INIT) <= 0)
            Application::current().print(module->name() + " did not start as a whole");

    send(C4DPL_STARTACTIVITY, nullptr);
    buildMenus();
    send(C4DPL_PROGRAM_STARTED, nullptr);
    C4DPL_CommandLineArgs none = {.argc = 0, .argv = nullptr}; // the program's own arguments are its own affair
    send(C4DPL_COMMANDLINEARGS, &none);
}

void Modules::buildMenus()
{
    send(C4DPL_BUILDMENU, nullptr);
}

void Modules::send(Int32 id, void* data)
{
    for (const auto& module : modules)
        if (module->started) sendTo(*module, id, data);
}

Filename Modules::folderOf(const void* address) const
{
    if (called) return called->file.GetDirectory();
    const void* image = imageOf(address);
    const auto found = std::ranges::find_if(modules, [image](const auto& module) { return module->image() == image; });
    return found == modules.end() ? Filename() : (*found)->file.GetDirectory();
}

Int32 Modules::call(Module& module, Int32 action, void* first, void* second, void* third)
{
    // Calls nest: a module may have the host send a message to all.
    const Module* caller = std::exchange(called, &module);
    Registrations& registrations = PartOf<Registrations>();
    registrations.SetModule(module.file);
    const Int32 answer = module.entry(action, first, second, third);
    registrations.SetModule(caller ? caller->file : Filename());
    called = caller;
    return answer;
}

Int32 Modules::sendTo(Module& module, Int32 id, void* data)
{
    // The id travels in a pointer.
    return call(module, C4DPL_MESSAGE, reinterpret_cast<void*>(static_cast<Int>(id)), data);
}

void Modules::endModules()
{
    for (; !modules.empty(); modules.pop_back()) call(*modules.back(), C4DPL_END);
}

} // namespace host

const Filename GeGetPluginPath()
{
    return host::PartOf<host::Modules>().folderOf(__builtin_return_address(0));
}

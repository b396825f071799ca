#include <dlfcn.h>
#include <link.h>
#include <strings.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <iterator>
#include <list>
#include <mutex>

#include "platform/posix/errors.h"
#include "platform/posix/module_table.h"
#include "platform/posix/paths.h"

namespace platform::posix {
namespace {

using DllMainFunction = BOOL (*)(HINSTANCE module, DWORD reason, LPVOID reserved);

struct Module {
  HMODULE handle;
  std::string path;  // absolute, without links
  int references;
};

std::string absolutePath(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return path;
  std::string result(resolved);
  std::free(resolved);
  return result;
}

bool hasFolder(const std::string& name) { return name.find_first_of("/\\") != std::string::npos; }

// The loaded modules. One lock, which its holder may take again, covers loading, DllMain included:
// a DllMain may load and release other modules, and no thread sees a module that is half made.
class Modules {
 public:
  static Modules& instance() {
    static Modules& modules = *new Modules;  // outlives every caller, static objects included
    return modules;
  }

  HMODULE load(const std::string& name);
  BOOL release(HMODULE handle);
  HMODULE handleOf(const std::string& name);
  HMODULE mainModule();
  std::string pathOf(HMODULE handle);
  void* findExport(HMODULE handle, const char* name);

 private:
  using Guard = std::lock_guard<std::recursive_mutex>;
  using Entry = std::list<Module>::iterator;

  Modules() {
    HMODULE program = static_cast<HMODULE>(dlopen(nullptr, RTLD_NOW));
    modules_.push_back({program, executablePath(), 1});
  }

  // The entry of a handle, null being the main module; end, with the last error set, for others.
  Entry find(HMODULE handle);
  Entry findByName(const std::string& name);
  HMODULE loadFile(const std::string& path);
  HMODULE attach(Entry module);
  BOOL callDllMain(HMODULE module, DWORD reason);

  std::recursive_mutex mutex_;
  std::list<Module> modules_;  // the first is the main one
};

Modules::Entry Modules::find(HMODULE handle) {
  if (handle == nullptr) return modules_.begin();
  for (Entry entry = modules_.begin(); entry != modules_.end(); ++entry) {
    if (entry->handle == handle) return entry;
  }
  return failWith(ERROR_MOD_NOT_FOUND, modules_.end());
}

Modules::Entry Modules::findByName(const std::string& name) {
  const std::string file = withModuleExtension(name);
  const std::string path = hasFolder(file) ? absolutePath(systemPath(file.c_str())) : "";
  for (Entry entry = modules_.begin(); entry != modules_.end(); ++entry) {
    const std::string base(baseName(entry->path));
    const bool same =
        path.empty() ? strcasecmp(base.c_str(), file.c_str()) == 0 : entry->path == path;
    if (same) return entry;
  }
  return failWith(ERROR_MOD_NOT_FOUND, modules_.end());
}

HMODULE Modules::load(const std::string& name) {
  const Guard guard(mutex_);
  if (name.empty()) return failWith(ERROR_INVALID_PARAMETER, HMODULE{});
  if (const Entry loaded = findByName(name); loaded != modules_.end()) {
    ++loaded->references;
    return loaded->handle;
  }
  const std::string file = withModuleExtension(name);
  const std::string path = hasFolder(file) ? systemPath(file.c_str()) : searchModule(file);
  return path.empty() ? failWith(ERROR_MOD_NOT_FOUND, HMODULE{}) : loadFile(absolutePath(path));
}

HMODULE Modules::loadFile(const std::string& path) {
  // A path without a slash would start the system's own search.
  const std::string place = path.find('/') == std::string::npos ? "./" + path : path;
  std::list<Module> added{{nullptr, path, 1}};
  void* handle = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    const bool foreign = access(place.c_str(), F_OK) == 0 && !isModuleFile(place);
    return failWith(foreign ? ERROR_BAD_EXE_FORMAT : ERROR_MOD_NOT_FOUND, HMODULE{});
  }
  if (const Entry known = find(static_cast<HMODULE>(handle)); known != modules_.end()) {
    dlclose(handle);  // the same file by another name
    ++known->references;
    return known->handle;
  }
  added.front().handle = static_cast<HMODULE>(handle);
  modules_.splice(modules_.end(), added);
  return attach(std::prev(modules_.end()));
}

HMODULE Modules::attach(Entry module) {
  HMODULE handle = module->handle;
  if (callDllMain(handle, DLL_PROCESS_ATTACH)) return handle;
  callDllMain(handle, DLL_PROCESS_DETACH);
  modules_.erase(module);
  dlclose(handle);
  return failWith(ERROR_DLL_INIT_FAILED, HMODULE{});
}

BOOL Modules::callDllMain(HMODULE module, DWORD reason) {
  void* entry = findExport(module, "DllMain");
  return entry == nullptr || reinterpret_cast<DllMainFunction>(entry)(module, reason, nullptr);
}

BOOL Modules::release(HMODULE handle) {
  const Guard guard(mutex_);
  const Entry module = handle != nullptr ? find(handle) : modules_.end();
  if (module == modules_.end()) return failWith(ERROR_MOD_NOT_FOUND, FALSE);
  if (module == modules_.begin() || --module->references != 0) return TRUE;
  callDllMain(handle, DLL_PROCESS_DETACH);
  modules_.erase(module);
  dlclose(handle);
  return TRUE;
}

HMODULE Modules::handleOf(const std::string& name) {
  const Guard guard(mutex_);
  const Entry module = findByName(name);
  return module != modules_.end() ? module->handle : nullptr;
}

HMODULE Modules::mainModule() { return modules_.front().handle; }

std::string Modules::pathOf(HMODULE handle) {
  const Guard guard(mutex_);
  const Entry module = find(handle);
  return module != modules_.end() ? module->path : std::string();
}

void* Modules::findExport(HMODULE handle, const char* name) {
  const Guard guard(mutex_);
  const Entry module = find(handle);
  if (module == modules_.end()) return nullptr;
  // A symbol of a library that the module links to is found as well, but is not its export.
  void* found = dlsym(module->handle, name);
  Dl_info place;
  link_map* owner = nullptr;
  link_map* expected = nullptr;
  const bool own = found != nullptr &&
                   dladdr1(found, &place, reinterpret_cast<void**>(&owner), RTLD_DL_LINKMAP) != 0 &&
                   dlinfo(module->handle, RTLD_DI_LINKMAP, &expected) == 0 && owner == expected;
  return own ? found : failWith<void*>(ERROR_PROC_NOT_FOUND, nullptr);
}

template <typename Char>
DWORD handOutPath(std::basic_string_view<Char> path, DWORD capacity, Char* buffer) {
  if (path.empty()) return 0;
  if (buffer == nullptr || capacity == 0) return failWith(ERROR_INSUFFICIENT_BUFFER, DWORD{0});
  const std::size_t length = path.copy(buffer, capacity - 1);
  buffer[length] = Char{};
  if (length == path.size()) return static_cast<DWORD>(length);
  return failWith(ERROR_INSUFFICIENT_BUFFER, capacity);
}

}  // namespace

void* findExport(HMODULE module, const char* name) noexcept {
  return Modules::instance().findExport(module, name);
}

}  // namespace platform::posix

using namespace platform::posix;

HMODULE LoadLibraryA(LPCSTR name) noexcept {
  return guarded(HMODULE{}, [=] { return Modules::instance().load(name != nullptr ? name : ""); });
}

HMODULE LoadLibraryW(LPCWSTR name) noexcept {
  return guarded(HMODULE{}, [=] { return Modules::instance().load(pathBytes(name)); });
}

BOOL FreeLibrary(HMODULE module) noexcept { return Modules::instance().release(module); }

HMODULE GetModuleHandleA(LPCSTR name) noexcept {
  return guarded(HMODULE{}, [=] {
    return name != nullptr ? Modules::instance().handleOf(name) : Modules::instance().mainModule();
  });
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD capacity) noexcept {
  return guarded(DWORD{0}, [=] {
    return handOutPath<char>(Modules::instance().pathOf(module), capacity, buffer);
  });
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD capacity) noexcept {
  return guarded(DWORD{0}, [=] {
    return handOutPath<wchar_t>(widePath(Modules::instance().pathOf(module)), capacity, buffer);
  });
}

FARPROC GetProcAddress(HMODULE module, LPCSTR nameOrOrdinal) noexcept {
  const auto number = reinterpret_cast<ULONG_PTR>(nameOrOrdinal);
  if (number > 0xFFFF) return reinterpret_cast<FARPROC>(findExport(module, nameOrOrdinal));
  char name[16];
  wsprintfA(name, "ordinal.%u", static_cast<UINT>(number));
  return reinterpret_cast<FARPROC>(findExport(module, name));
}

BOOL DisableThreadLibraryCalls(HMODULE module) noexcept {
  return guarded(FALSE, [=] { return !Modules::instance().pathOf(module).empty(); });
}

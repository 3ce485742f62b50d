#include "platform/linux/decoder/modules.h"

#include <dlfcn.h>

namespace modules {

Decode* load(const std::string& folder, const char* name) {
    void* const module = dlopen((folder + "/" + name).c_str(), RTLD_NOW | RTLD_LOCAL);
    return module ? reinterpret_cast<Decode*>(dlsym(module, "trovastDecode")) : nullptr;
}

}  // namespace modules

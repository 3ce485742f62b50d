#pragma once

namespace sandbox {

/// From here on the kernel refuses this program's calls that reach the network, other programs or
/// the kernel's own matters, or that change or lock files. For all its threads.
/// Threads: the decoder's only one. Fails: by its result; then nothing may be relied on.
[[nodiscard]] bool filterCalls();

}  // namespace sandbox

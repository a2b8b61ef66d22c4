#pragma once

#include <libvue/platform/backend/Forward.h>

namespace libvue::backend {

class MemoryClipboard;
class MemoryWindowServer;
struct MemoryWindow;

} // namespace libvue::backend

// Any bytes: the reader of JSON beside a plain one, and what the writer makes of the value.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "json/Epreuve.h"

// The plain reader recurses, on a stack that the sanitizers make much larger frames on.
static constexpr std::size_t kPlusLong = 4096;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t nombre) {
    if (nombre > kPlusLong) return -1; // not for the corpus either
    const std::string faute = essai::epreuve({reinterpret_cast<const char*>(octets), nombre});
    if (!faute.empty()) {
        std::fprintf(stderr, "%s\n", faute.c_str());
        std::abort();
    }
    return 0;
}

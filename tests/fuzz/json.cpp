// Any bytes: the reader of JSON beside a plain one, and what the writer makes of the value.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "json/Epreuve.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* octets, std::size_t nombre) {
    const std::string faute = essai::epreuve({reinterpret_cast<const char*>(octets), nombre});
    if (!faute.empty()) {
        std::fprintf(stderr, "%s\n", faute.c_str());
        std::abort();
    }
    return 0;
}

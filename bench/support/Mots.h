#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace banc {

/// The French words of the file that LIBVUE_BENCH_WORDS names, or of the system's list, in its order. Throws where
/// there are none.
std::vector<std::string> mots();

/// So many words from all over the list, in no order, the same ones each time.
std::vector<std::string> motsMelanges(std::size_t nombre);

} // namespace banc

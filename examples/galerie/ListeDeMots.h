#pragma once

#include <string>

namespace galerie {

/// The system's list of French words in UTF-8, one a line; empty where there is none.
[[nodiscard]] std::string listeDeMots();

} // namespace galerie
